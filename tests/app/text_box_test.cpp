#include "app/text_box.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTextEdit>
#include <gtest/gtest.h>

namespace tessavo::test {
namespace {

TEST(TextBox, IsWhatTextIsTypedInto) {
    EXPECT_TRUE(isTextBox(QLineEdit()));
    EXPECT_TRUE(isTextBox(QSpinBox()));
    EXPECT_TRUE(isTextBox(QTextEdit()));
    EXPECT_TRUE(isTextBox(QPlainTextEdit()));
    EXPECT_FALSE(isTextBox(QPushButton()));
    EXPECT_FALSE(isTextBox(QComboBox()));
    EXPECT_FALSE(isTextBox(QWidget()));
}

}  // namespace
}  // namespace tessavo::test
