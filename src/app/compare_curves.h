#pragma once

#include <QWidget>
#include <memory>
#include <optional>

#include "app/small_chart.h"
#include "params/channels.h"
#include "params/records.h"

namespace tessavo {

/// Computes the curves of sets that are not the ones being tuned. Warns nobody.
class CurveMaker {
 public:
    CurveMaker();
    ~CurveMaker();
    CurveMaker(const CurveMaker&) = delete;
    CurveMaker& operator=(const CurveMaker&) = delete;

    /// \param channel of the outputs; the input side where there is none
    /// \param filterMode index in filterMethodNames
    [[nodiscard]] FineCurve curveOf(const ParameterSet& set, std::optional<RecordChannel> channel,
                                    std::uint32_t filterMode);

 private:
    struct Scratch;
    std::unique_ptr<Scratch> scratch_;
};

/// A small chart with the curves of both sides of a comparison, which differ in colour and in their lines. Its legend
/// tells the side of each, since both may have one name.
class CompareChart : public QWidget {
    Q_OBJECT

 public:
    explicit CompareChart(QWidget* parent = nullptr);

    /// \param title of what the curves are: "Channel 3"
    void show(const QString& title, const QString& leftName, const FineCurve& left, const QString& rightName,
              const FineCurve& right);
    /// Shows the axes without curves.
    void clear(const QString& title);

    [[nodiscard]] const QString& title() const { return title_; }
    /// "Left: Type 1": what the legend calls a side.
    [[nodiscard]] QString leftKey() const { return QStringLiteral("Left: ") + leftName_; }
    [[nodiscard]] QString rightKey() const { return QStringLiteral("Right: ") + rightName_; }
    [[nodiscard]] const std::optional<FineCurve>& left() const { return left_; }
    [[nodiscard]] const std::optional<FineCurve>& right() const { return right_; }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    [[nodiscard]] QRectF box() const;
    void tellAloud();

    QString title_;
    QString leftName_;
    QString rightName_;
    std::optional<FineCurve> left_;
    std::optional<FineCurve> right_;
};

}  // namespace tessavo
