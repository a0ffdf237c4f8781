#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace lmx {
class TMapViewControl;
enum class TMapDocExternalResourcePolicy;
} // namespace lmx

/// The map of a view as a document in a file. What is linked stays in its files unless data are to be embedded.
class TMapDocument {
public:
    /// The view outlives the document.
    explicit TMapDocument(lmx::TMapViewControl* view);

    const QString& GetFileName() const { return FFileName; } ///< empty until it is opened or saved
    bool GetEmbedsData() const { return FEmbedsData; }
    void SetEmbedsData(bool embedsData) { FEmbedsData = embedsData; }

    /// Whether the map is another one than when it was made, opened or saved last. What is looked at (place, scale and
    /// size of the window) is no part of it.
    bool IsChanged() const;
    /// From now on the map is as it is meant to be.
    void MarkUnchanged();

    /// Gives the view a manager without layers.
    void New();
    /// Gives the view a fresh manager with the document's map. What of it did not arrive is told in lines.
    /// @throws lmx::Exception for what is no document of the viewer; the map is as it was then.
    QStringList Open(const QString& fileName);

    /// What saving would end at, lose or leave out, in words for the user.
    QStringList ProblemsOfSaving() const;
    /// Puts the map in the place of the file in one step.
    /// @throws lmx::Exception if it cannot be saved; the file is as it was then.
    void Save(const QString& fileName);

private:
    QByteArray State() const;
    lmx::TMapDocExternalResourcePolicy Policy() const;

    lmx::TMapViewControl* FView;
    QString FFileName;
    bool FEmbedsData = false;
    QByteArray FUnchangedState;
};
