#include "GLibSessionBus.h"

#include "GLibPointer.h"

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace quillbox {
namespace {

    // Connects to a bus that goes and to the one that comes after. The exit code tells what was reached.
    void outliveABus()
    {
        for (int round = 1; round <= 2; ++round) {
            const char* command[] = { "dbus-daemon", "--session", "--nofork", "--print-address", nullptr };
            GPid daemon = 0;
            int output = -1;
            if (!g_spawn_async_with_pipes(nullptr, const_cast<char**>(command), nullptr, G_SPAWN_SEARCH_PATH, nullptr,
                                          nullptr, &daemon, nullptr, &output, nullptr, nullptr))
                _exit(10 + round);
            char address[512] = {};
            std::FILE* lines = fdopen(output, "r");
            if (!std::fgets(address, sizeof address, lines))
                _exit(20 + round);
            address[std::string_view(address).find('\n')] = '\0';
            setenv("DBUS_SESSION_BUS_ADDRESS", address, 1);
            useSessionBusOfGLib();
            const GLibObject<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
            if (!bus || g_dbus_connection_is_closed(bus.get()))
                _exit(30 + round);
            kill(daemon, SIGKILL);
            while (!g_dbus_connection_is_closed(bus.get()))
                g_main_context_iteration(nullptr, TRUE);
            while (g_main_context_iteration(nullptr, FALSE)) { }
        }
        _exit(0);
    }

    TEST(GLibSessionBus, MayGoWithoutEndingTheProgram)
    {
        testing::FLAGS_gtest_death_test_style = "threadsafe";
        EXPECT_EXIT(outliveABus(), testing::ExitedWithCode(0), "");
    }

} // namespace
} // namespace quillbox
