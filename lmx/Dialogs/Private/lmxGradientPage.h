#pragma once

#include <lmx/Colour/lmxValueRange.h>

#include <QWidget>

#include <memory>

namespace lmx {

class IGradientColorCalculator;
class TGradientEditorFrame;

/// The editor of one gradient over the whole range.
class TGradientPage final : public QWidget {
public:
    explicit TGradientPage(QWidget* parent = nullptr);

    void SetValueRange(const TValueRange& range);
    void SetGradient(const IGradientColorCalculator& calculator); ///< takes its range, too
    std::shared_ptr<IGradientColorCalculator> CreateColorCalc() const;

private:
    TGradientEditorFrame* FEditorFrame;
};

} // namespace lmx
