#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // For what the tests say to the program over D-Bus.
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
