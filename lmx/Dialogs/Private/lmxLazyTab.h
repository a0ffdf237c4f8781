#pragma once

#include <QVBoxLayout>
#include <QWidget>

#include <functional>
#include <utility>

namespace lmx {

/// The place of a tab's page, which is made when it is first seen or asked for. Until then nothing is there that could
/// be laid out or drawn.
class TLazyPlace : public QWidget {
public:
    /// The tab key comes to the page from `before`.
    explicit TLazyPlace(QWidget* before) : FBefore(before) {}

    virtual void Make() = 0; ///< nothing if the page is there

protected:
    void Put(QWidget* page);
    void showEvent(QShowEvent* event) override;

private:
    QWidget* FBefore;
};

template<class Page>
class TLazyTab final : public TLazyPlace {
public:
    using TPrepare = std::function<void(Page&)>;

    /// `prepare` is called for the page as soon as there is one, and by PrepareAnew.
    TLazyTab(QWidget* before, TPrepare prepare) : TLazyPlace(before), FPrepare(std::move(prepare)) {}

    Page& Get() {
        Make();
        return *FPage;
    }
    void PrepareAnew() {
        if (FPage)
            FPrepare(*FPage);
    }

    void Make() override {
        if (FPage)
            return;
        FPage = new Page(this);
        FPrepare(*FPage);
        Put(FPage);
    }

private:
    TPrepare FPrepare;
    Page* FPage = nullptr;
};

} // namespace lmx
