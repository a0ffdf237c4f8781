#include <lmx/DataSources/lmxTimeStrip.h>

#include <lmx/DataSources/Private/lmxTimeStripButton.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>

#include <algorithm>
#include <initializer_list>
#include <limits>

namespace lmx {

namespace {

constexpr int FastestPace = 60;

QString Named(const char* text) {
    return QString::fromLatin1(text);
}

} // namespace

TTimeStrip::TTimeStrip(QWidget* parent) : QWidget(parent) {
    setAccessibleName(Named("Time"));
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);
    FFirst = AddButton(TTimeStripButton::DrawFirst, Named("First"), &TFramePlayer::First);
    FPrevious = AddButton(TTimeStripButton::DrawPrevious, Named("Previous"), &TFramePlayer::Previous);
    FPlay = AddButton(TTimeStripButton::DrawPlay, Named("Play"), nullptr);
    FNext = AddButton(TTimeStripButton::DrawNext, Named("Next"), &TFramePlayer::Next);
    FLast = AddButton(TTimeStripButton::DrawLast, Named("Last"), &TFramePlayer::Last);
    AddSlider();
    AddCaption();
    AddSettings();
    Refresh();
}

TTimeStrip::~TTimeStrip() = default;

TTimeStripButton* TTimeStrip::AddButton(TGlyph glyph, const QString& hint, TDeed deed) {
    auto* const button = new TTimeStripButton(this, glyph, hint);
    button->setObjectName(hint.toLower());
    layout()->addWidget(button);
    GuardClick(button, [this, deed] {
        if (deed)
            Do(deed);
        else
            TogglePlaying();
    });
    return button;
}

void TTimeStrip::AddSlider() {
    FSlider = new QSlider(Qt::Horizontal, this);
    FSlider->setObjectName(Named("slider"));
    FSlider->setAccessibleName(Named("Frame"));
    FSlider->setMinimumWidth(80);
    layout()->addWidget(FSlider);
    connect(FSlider, &QSlider::valueChanged, this, [this](int value) {
        GuardEvent(this, [&] {
            TFramePlayer* const player = FPlayer.Get();
            const auto index = static_cast<std::size_t>(value);
            if (player && index < player->GetCount())
                player->GoTo(index);
        });
    });
}

void TTimeStrip::AddCaption() {
    FCaption = new QLabel(this);
    FCaption->setObjectName(Named("caption"));
    FCaption->setTextFormat(Qt::PlainText);
    FCaption->setAccessibleName(Named("Date"));
    layout()->addWidget(FCaption);
}

void TTimeStrip::AddSettings() {
    FStep = new QComboBox(this);
    FStep->setObjectName(Named("step"));
    FStep->setAccessibleName(Named("Step"));
    FStep->addItems({Named("By frame"), Named("By month"), Named("By year")}); // in the order of TFrameStep
    layout()->addWidget(FStep);
    connect(FStep, &QComboBox::currentIndexChanged, this, [this](int index) {
        GuardEvent(this, [&] {
            if (FPlayer)
                FPlayer->SetStep(static_cast<TFrameStep>(index));
        });
    });

    FPace = new QSpinBox(this);
    FPace->setObjectName(Named("pace"));
    FPace->setAccessibleName(Named("Frames a second"));
    FPace->setToolTip(FPace->accessibleName());
    FPace->setRange(1, FastestPace);
    FPace->setSuffix(Named(" fps"));
    layout()->addWidget(FPace);
    connect(FPace, &QSpinBox::valueChanged, this, [this](int value) {
        if (FPlayer)
            FPlayer->SetFramesPerSecond(value);
    });

    FLoop = new TTimeStripButton(this, TTimeStripButton::DrawLoop, Named("Repeat"));
    FLoop->setObjectName(Named("loop"));
    FLoop->setCheckable(true);
    layout()->addWidget(FLoop);
    connect(FLoop, &QAbstractButton::toggled, this, [this](bool isOn) {
        GuardEvent(this, [&] {
            if (FPlayer)
                FPlayer->SetLoop(isOn);
        });
    });
}

void TTimeStrip::SetPlayer(TFramePlayer* player) {
    FPlayer = player;
    FChanged.Cancel();
    FFrame.Cancel();
    if (player) {
        FChanged = player->GetOnChanged().Add([this](TFramePlayer*) { Refresh(); });
        FFrame = player->GetOnFrame().Add([this](TFramePlayer*) { Refresh(); });
    }
    FCaption->setMinimumWidth(0);
    Refresh();
}

void TTimeStrip::Do(TDeed deed) {
    if (TFramePlayer* const player = FPlayer.Get())
        (player->*deed)();
    else
        Refresh(); // it is gone, which nobody has told
}

void TTimeStrip::TogglePlaying() {
    Do(FPlayer && FPlayer->IsPlaying() ? &TFramePlayer::Stop : &TFramePlayer::Play);
}

// The caption is asked of a host's source, which may end the player or the strip, or have it refreshed.
void TTimeStrip::Refresh() {
    const QPointer self(this);
    const unsigned refresh = ++FRefreshes;
    const QString caption = FPlayer ? FPlayer->GetCaption() : QString();
    if (!self || refresh != FRefreshes)
        return;
    const TFramePlayer* const player = FPlayer.Get();
    const bool hasFrames = player && player->GetCount() > 0;
    for (QWidget* const part :
         std::initializer_list<QWidget*>{FFirst, FPrevious, FPlay, FNext, FLast, FSlider, FStep, FPace, FLoop})
        part->setEnabled(hasFrames);
    RefreshPlace(hasFrames ? player : nullptr, hasFrames ? caption : QString());
    if (player)
        RefreshSettings(player);
}

void TTimeStrip::RefreshPlace(const TFramePlayer* player, const QString& caption) {
    FCaption->setText(caption);
    FCaption->setMinimumWidth(std::max(FCaption->minimumWidth(), FCaption->sizeHint().width())); // stays while it plays
    constexpr auto most = static_cast<std::size_t>(std::numeric_limits<int>::max());
    const std::size_t last = player ? player->GetCount() - 1 : 0;
    const std::size_t wanted = player ? player->GetWanted().value_or(0) : 0;
    const QSignalBlocker blocker(FSlider);
    FSlider->setRange(0, static_cast<int>(std::min(last, most)));
    FSlider->setPageStep(std::max(1, FSlider->maximum() / 10));
    FSlider->setValue(static_cast<int>(std::min(wanted, most)));
    FSlider->setAccessibleDescription(caption);
}

void TTimeStrip::RefreshSettings(const TFramePlayer* player) {
    if (player->IsPlaying())
        FPlay->SetGlyph(TTimeStripButton::DrawPause, Named("Pause"));
    else
        FPlay->SetGlyph(TTimeStripButton::DrawPlay, Named("Play"));
    const QSignalBlocker stepBlocker(FStep);
    const QSignalBlocker paceBlocker(FPace);
    const QSignalBlocker loopBlocker(FLoop);
    FStep->setCurrentIndex(static_cast<int>(player->GetStep()));
    FPace->setValue(static_cast<int>(Round(player->GetFramesPerSecond())));
    FLoop->setChecked(player->GetLoop());
    FLoop->update();
}

void TTimeStrip::keyPressEvent(QKeyEvent* event) {
    GuardEvent(this, [this, event] {
        switch (event->key()) {
        case Qt::Key_Left:
            return Do(&TFramePlayer::Previous);
        case Qt::Key_Right:
            return Do(&TFramePlayer::Next);
        case Qt::Key_Home:
            return Do(&TFramePlayer::First);
        case Qt::Key_End:
            return Do(&TFramePlayer::Last);
        case Qt::Key_Space:
            return TogglePlaying();
        default:
            return QWidget::keyPressEvent(event);
        }
    });
}

} // namespace lmx
