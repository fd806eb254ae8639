// The widgets are tested without a display.
#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char* argv[]) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // A plain desktop, whatever that of the developer is.
    for (const char* name : {"QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "QT_SCALE_FACTOR"})
        qunsetenv(name);
    QApplication application{argc, argv};
    return RUN_ALL_TESTS();
}
