#include <QCoreApplication>

#include <gmock/gmock.h>

#include <quire/platform/Automation.h>

int main(int argc, char **argv)
{
    ::testing::InitGoogleMock(&argc, argv);
    const QCoreApplication application(argc, argv);
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
