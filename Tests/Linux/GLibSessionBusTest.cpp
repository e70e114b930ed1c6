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
            std::FILE* daemon = popen("exec dbus-daemon --session --nofork --print-address=1 --print-pid=1", "r");
            char address[512] = {};
            pid_t process = 0;
            if (std::fscanf(daemon, "%511s %d", address, &process) != 2)
                _exit(10 + round);
            setenv("DBUS_SESSION_BUS_ADDRESS", address, 1);
            useSessionBusOfGLib();
            const GLibObject<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
            if (!bus || g_dbus_connection_is_closed(bus.get()))
                _exit(20 + round);
            kill(process, SIGKILL);
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
