#pragma once

#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/DataSources/lmxFramePlayer.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Widgets/lmxGlyphPainter.h>

#include <QWidget>

class QComboBox;
class QLabel;
class QSlider;
class QSpinBox;

namespace lmx {

class TTimeStripButton;

/// A strip of buttons that steps and plays a player: first, previous, play or pause, next and last frame, a slider over
/// all of them, the date in the calendar of the file, how far a step goes, the pace, and whether playing repeats. It
/// shows the state of the player whoever changes it.
///
/// Keys, wherever on the strip the focus is and its owner does not take them: left and right step, Home and End go to
/// the ends, the space bar plays and pauses.
class LMX_DATASOURCES_EXPORT TTimeStrip : public QWidget {
public:
    explicit TTimeStrip(QWidget* parent = nullptr);
    ~TTimeStrip() override;

    TFramePlayer* GetPlayer() const { return FPlayer.Get(); } ///< nil at first, and once it is gone
    /// The player stays its owner's, and may go before the strip.
    void SetPlayer(TFramePlayer* player);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    using TDeed = void (TFramePlayer::*)();

    TTimeStripButton* AddButton(TGlyph glyph, const QString& hint, TDeed deed);
    void AddSlider();
    void AddCaption();
    void AddSettings();
    void Do(TDeed deed);
    void TogglePlaying();
    void Refresh();
    void RefreshPlace(const TFramePlayer* player, const QString& caption);
    void RefreshSettings(const TFramePlayer* player);

    TBorrowed<TFramePlayer> FPlayer;
    unsigned FRefreshes = 0; // begun
    TSubscription FChanged;
    TSubscription FFrame;
    TTimeStripButton* FFirst = nullptr;
    TTimeStripButton* FPrevious = nullptr;
    TTimeStripButton* FPlay = nullptr;
    TTimeStripButton* FNext = nullptr;
    TTimeStripButton* FLast = nullptr;
    TTimeStripButton* FLoop = nullptr;
    QSlider* FSlider = nullptr;
    QLabel* FCaption = nullptr;
    QComboBox* FStep = nullptr;
    QSpinBox* FPace = nullptr;
};

} // namespace lmx
