#pragma once

#include <lmx/MapDoc/lmxColorCalcPersist.h>
#include <lmx/Runtime/lmxExceptions.h>

namespace lmx {

/// Documents have no form for gradients in parts: saving a map that shows one fails, and reading drops its layer.
class TMultipartGradientColorCalculatorPersist final : public IColorCalcPersist {
public:
    std::shared_ptr<IBaseColorCalculator> CreateCalculator() override { Refuse(); }
    void Write(const std::shared_ptr<IBaseColorCalculator>&, TXmlNode) override { Refuse(); }
    void Read(const std::shared_ptr<IBaseColorCalculator>&, TXmlNode) override { Refuse(); }

private:
    [[noreturn]] static void Refuse() { throw ENotImplemented(QStringLiteral("Not Implemented")); }
};

} // namespace lmx
