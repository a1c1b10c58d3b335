// The tests of the command line.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTextCodec>

int main(int argc, char *argv[])
{
#ifndef Q_OS_WIN
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); // as the program itself does
#endif
    const QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
