#pragma once

#include <QWidget>
#include <memory>
#include <optional>

#include "params/channels.h"
#include "params/records.h"
#include "plot/response_curve.h"

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
    [[nodiscard]] ResponseCurve curveOf(const ParameterSet& set, std::optional<RecordChannel> channel,
                                        std::uint32_t filterMode);

 private:
    struct Scratch;
    std::unique_ptr<Scratch> scratch_;
};

/// A small chart with the curves of both sides of a comparison, which differ in colour and in their lines.
class CompareChart : public QWidget {
    Q_OBJECT

 public:
    explicit CompareChart(QWidget* parent = nullptr);

    /// \param title of what the curves are: "Channel 3"
    void show(const QString& title, const QString& leftName, const ResponseCurve& left,
              const QString& rightName, const ResponseCurve& right);
    /// Shows the axes without curves.
    void clear(const QString& title);

    [[nodiscard]] const QString& title() const { return title_; }
    [[nodiscard]] const std::optional<ResponseCurve>& left() const { return left_; }
    [[nodiscard]] const std::optional<ResponseCurve>& right() const { return right_; }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    [[nodiscard]] QRectF box() const;
    void tellAloud();

    QString title_;
    QString leftName_;
    QString rightName_;
    std::optional<ResponseCurve> left_;
    std::optional<ResponseCurve> right_;
};

}  // namespace tessavo
