#pragma once

#include <tests/Support/ModalAnswer.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <lmx/Widgets/lmxModalDialog.h>

#include <QPushButton>
#include <QString>
#include <QTest>

// The controls of a form by their names, and how users press them.

namespace lmx::tests {

template<class Control>
Control& Find(const QWidget& form, const char* name) {
    auto* control = form.findChild<Control*>(QString::fromLatin1(name));
    EXPECT_NE(control, nullptr) << name;
    return *control;
}

inline QString HeadingOf(const QWidget& form) {
    return form.findChild<TFormHeading*>()->text();
}

inline void ClickOn(const QWidget& form, const char* button) {
    QTest::mouseClick(&Find<QWidget>(form, button), Qt::LeftButton);
}

inline void ClickOk(const QWidget& form) {
    ClickOn(form, "btnOK");
}

inline void ClickCancel(const QWidget& form) {
    ClickOn(form, "btnCancel");
}

/// Presses a key on whatever has the keyboard, which a dialog gets a moment after it came up.
inline void PressKey(QWidget& form, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    QTest::keyClick(form.focusWidget(), key, modifiers);
}

/// The names of the controls in the order in which the tab key comes to them, from the first one.
inline QStringList TabOrderOf(QWidget& form) {
    QStringList names;
    ShowActive(form);
    const QWidget* first = nullptr;
    for (QWidget* at = form.nextInFocusChain(); !first && at != &form; at = at->nextInFocusChain())
        if (at->isVisible() && at->isEnabled() && (at->focusPolicy() & Qt::TabFocus) != 0) {
            at->setFocus(Qt::TabFocusReason);
            first = form.focusWidget();
        }
    do {
        names.append(form.focusWidget()->objectName());
        QTest::keyClick(form.focusWidget(), Qt::Key_Tab);
    } while (form.focusWidget() != first && names.size() < 50);
    return names;
}

} // namespace lmx::tests
