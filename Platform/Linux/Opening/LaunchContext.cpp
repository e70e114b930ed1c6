#include "LaunchContext.h"

namespace {

struct QuillboxLaunchContext {
    GAppLaunchContext parent;
    char* token;
    bool* isTaken;
};

struct QuillboxLaunchContextClass {
    GAppLaunchContextClass parent;
};

G_DEFINE_TYPE(QuillboxLaunchContext, quillbox_launch_context, G_TYPE_APP_LAUNCH_CONTEXT)

QuillboxLaunchContext* cast(gpointer context)
{
    return G_TYPE_CHECK_INSTANCE_CAST(context, quillbox_launch_context_get_type(), QuillboxLaunchContext);
}

// The token is also the start-up id: both kinds of programs accept either.
char* startupNotifyId(GAppLaunchContext* context, GAppInfo*, GList*)
{
    if (cast(context)->token)
        *cast(context)->isTaken = true;
    return g_strdup(cast(context)->token);
}

void finalize(GObject* object)
{
    g_free(cast(object)->token);
    G_OBJECT_CLASS(quillbox_launch_context_parent_class)->finalize(object);
}

void quillbox_launch_context_init(QuillboxLaunchContext* context)
{
    context->token = nullptr;
    context->isTaken = nullptr;
}

void quillbox_launch_context_class_init(QuillboxLaunchContextClass* type)
{
    G_APP_LAUNCH_CONTEXT_CLASS(type)->get_startup_notify_id = startupNotifyId;
    G_OBJECT_CLASS(type)->finalize = finalize;
}

} // namespace

namespace quillbox {

GLibObject<GAppLaunchContext> makeLaunchContext(const std::string& activationToken, bool& isTaken)
{
    gpointer object = g_object_new(quillbox_launch_context_get_type(), nullptr);
    GLibObject<GAppLaunchContext> context(G_APP_LAUNCH_CONTEXT(object));
    // The tokens with which this process was started are not meant for programs that it starts.
    for (const char* variable : { "XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID" }) {
        if (activationToken.empty())
            g_app_launch_context_unsetenv(context.get(), variable);
        else
            g_app_launch_context_setenv(context.get(), variable, activationToken.c_str());
    }
    cast(object)->isTaken = &isTaken;
    if (!activationToken.empty())
        cast(object)->token = g_strdup(activationToken.c_str());
    return context;
}

} // namespace quillbox
