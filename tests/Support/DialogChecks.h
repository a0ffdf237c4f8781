#pragma once

#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>

namespace lmx::tests {

/// What keeps a user from reading and operating a form, one sentence each; nothing for a form that is in order:
///
/// - a widget that is smaller than its text or its least size, lies outside the form (or outside what a scroll area
///   scrolls) or on top of another one, or a column that is narrower than its title;
/// - a control without a name for screen readers;
/// - a control that the tab key does not reach, or reaches against the order of reading (of radio buttons that exclude
///   each other one is enough, the arrow keys lead on);
/// - an access key that two texts have, or one of a label that leads nowhere.
///
/// The form is shown and gets the keyboard. Each page of its tabs is looked at.
QStringList FaultsOf(QWidget& form);

/// FaultsOf at fonts of 9 to 14 points, and again with all texts twice as long; each time on a form made anew. A dialog
/// is also cancelled by Escape.
/// `sharedKeys` are access keys ("Alt+C") that several of its texts are meant to have.
void CheckForm(const std::function<std::unique_ptr<QWidget>()>& make, const QStringList& sharedKeys = {});

} // namespace lmx::tests
