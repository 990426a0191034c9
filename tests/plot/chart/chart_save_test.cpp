#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "plot/chart/chart_helpers.h"
#include "plot/chart/image_chart.h"
#include "plot/chart/xy_chart.h"

namespace tessavo::test {
namespace {

class ChartSave : public testing::Test {
 protected:
    int save(const CChart& chart) {
        return chart.saveToFile(path(), [this](const QString& text) { messages_.push_back(text); });
    }
    [[nodiscard]] QString path() const { return folder_.filePath(QStringLiteral("data.txt")); }
    [[nodiscard]] QByteArray text() const {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }
    void write(const QByteArray& bytes) const {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QTemporaryDir folder_;
    std::vector<QString> messages_;
};

TEST_F(ChartSave, XyChartWritesPairs) {
    CXYChart chart;
    addXy(chart, {20, 40, 60.5}, {-3, 0, 1.0 / 3});
    addXy(chart, {1e6}, {1e-5});
    EXPECT_EQ(save(chart), 1);
    EXPECT_EQ(text(), "20 -3\r\n40 0\r\n60.5 0.333333\r\n1e+06 1e-05\r\n");
}

TEST_F(ChartSave, XyChartSkipsOtherData) {
    CXYChart chart;
    chart.addDataSet(std::vector<double>{1, 2, 3}, std::array{3});
    addXy(chart, {20}, {-3});
    chart.addDataSet(std::vector<double>{1, 2, 3, 4, 5, 6}, std::array{3, 2});
    chart.addDataSet(std::vector<double>{1, 2}, std::array{2, 1, 1});
    EXPECT_EQ(save(chart), 1);
    EXPECT_EQ(text(), "20 -3\r\n");
    EXPECT_TRUE(messages_.empty());
}

TEST_F(ChartSave, BaseChartWritesEveryValue) {
    CImageChart chart;
    chart.addDataSet(std::vector<double>{1, -2.5}, std::array{2});
    chart.addDataSet(std::vector<double>{1, 2, 3, 4}, std::array{2, 2});
    EXPECT_EQ(save(chart), 1);
    EXPECT_EQ(text(), "1\r\n-2.5\r\n1\r\n2\r\n3\r\n4\r\n");
}

TEST_F(ChartSave, BaseChartNamesDimensionsItCannotSave) {
    CImageChart chart;
    chart.addDataSet(std::vector<double>{1, 2}, std::array{2, 1, 1});
    chart.addDataSet(std::vector<double>{7}, std::array{1});
    chart.addDataSet(std::vector<double>{1, 2}, std::array{2, 1, 1, 1});
    EXPECT_EQ(save(chart), 1);
    EXPECT_EQ(text(), "7\r\n");
    ASSERT_EQ(messages_.size(), 2U);
    EXPECT_EQ(messages_[0], "Cannot save files of 3 dimensions.");
    EXPECT_EQ(messages_[1], "Cannot save files of 4 dimensions.");
}

TEST_F(ChartSave, AChartWithoutDataSetsLeavesAnEmptyFileAndTellsIt) {
    const CXYChart xy;
    const CImageChart image;
    for (const CChart* chart : {static_cast<const CChart*>(&xy), static_cast<const CChart*>(&image)}) {
        QFile::remove(path());
        EXPECT_EQ(save(*chart), 0);
        EXPECT_EQ(text(), "");
        write("old");
        EXPECT_EQ(save(*chart), 0);
        EXPECT_EQ(text(), "");
    }
    EXPECT_EQ(xy.saveToFile(folder_.filePath("missing/data.txt"), {}), 0);
}

TEST_F(ChartSave, DataSetsWithoutValuesAreSavedAsNothing) {
    CXYChart xy;
    xy.addDataSet({}, std::array{2, 0});
    CImageChart image;
    image.addDataSet({}, std::array{0});
    for (const CChart* chart : {static_cast<const CChart*>(&xy), static_cast<const CChart*>(&image)}) {
        write("old");
        EXPECT_EQ(save(*chart), 1);
        EXPECT_EQ(text(), "");
    }
    EXPECT_TRUE(messages_.empty());
}

TEST_F(ChartSave, AnExistingFileIsReplacedWhole) {
    write("something much longer than what comes now");
    CXYChart chart;
    addXy(chart, {1}, {2});
    EXPECT_EQ(save(chart), 1);
    EXPECT_EQ(text(), "1 2\r\n");
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden), QStringList("data.txt"));
}

TEST_F(ChartSave, AFileThatCannotBeCreatedIsToldByZero) {
    CXYChart chart;
    addXy(chart, {1}, {2});
    EXPECT_EQ(chart.saveToFile(folder_.filePath("missing/data.txt"), {}), 0);
    EXPECT_EQ(chart.saveToFile(folder_.path(), {}), 0);
    EXPECT_EQ(chart.saveToFile({}, {}), 0);
}

TEST_F(ChartSave, ValuesThatAreNotFiniteAreSaved) {
    CXYChart chart;
    addXy(chart, {1, 2}, {std::numeric_limits<double>::infinity(), std::nan("")});
    EXPECT_EQ(save(chart), 1);
    EXPECT_EQ(text(), "1 inf\r\n2 nan\r\n");
}

TEST_F(ChartSave, ACurveHasAThousandLines) {
    CXYChart chart;
    const ResponseCurve curve = flatCurve(-7);
    addXy(chart, {curve.frequencyHz.begin(), curve.frequencyHz.end()},
          {curve.magnitudeDb.begin(), curve.magnitudeDb.end()});
    EXPECT_EQ(save(chart), 1);
    EXPECT_EQ(text().count("\r\n"), 1000);
    EXPECT_TRUE(text().startsWith("20 -7\r\n40 -7\r\n"));
    EXPECT_TRUE(text().endsWith("20000 -7\r\n"));
}

}  // namespace
}  // namespace tessavo::test
