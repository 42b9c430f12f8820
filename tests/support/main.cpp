// The main function of every test program: Qt's application around GoogleTest's run.
#include <QApplication>
#include <gtest/gtest.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
#ifdef __SANITIZE_ADDRESS__
    // Qt's offscreen platform never frees its screen.
    __lsan_disable();
#endif
    QApplication application(argc, argv);
#ifdef __SANITIZE_ADDRESS__
    __lsan_enable();
#endif
    return RUN_ALL_TESTS();
}
