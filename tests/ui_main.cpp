#include <QApplication>
#include <gtest/gtest.h>

namespace {

QtMessageHandler toolkitsOwn = nullptr;

// The offscreen platform says hundreds of times what it cannot do; a test that fails would not be found between that.
void tell(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (!text.startsWith(QLatin1String("This plugin does not support "))) {
        toolkitsOwn(type, context, text);
    }
}

}  // namespace

// Widgets need an application object for the whole run.
int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    toolkitsOwn = qInstallMessageHandler(tell);
    const QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
