// Tests of windows: they need a QApplication, and a home that is not that of whoever runs them.
#include <QApplication>

#include "support/temp_tree.h"

namespace kelvane::testing {
namespace {

void putBelow(const TempTree& home, const char* variable, const char* folder)
{
    qputenv(variable, QByteArray::fromStdString(home.folder(folder).string()));
}

int runTests(int& count, char** words)
{
    const TempTree home;
    putBelow(home, "XDG_CONFIG_HOME", "config");
    putBelow(home, "XDG_CACHE_HOME", "cache");
    putBelow(home, "XDG_STATE_HOME", "state");
    putBelow(home, "XDG_DATA_HOME", "data");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_ACCESSIBILITY", "1");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    QApplication application(count, words);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}

}  // namespace
}  // namespace kelvane::testing

int main(int count, char** words)
{
    ::testing::InitGoogleMock(&count, words);
    return kelvane::testing::runTests(count, words);
}
