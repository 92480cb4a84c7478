#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    // Event loop and session bus need an application object.
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
