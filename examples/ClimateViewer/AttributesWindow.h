#pragma once

class QString;
class QWidget;

/// Opens a window with a table of attributes (.dbf), which lives until it is closed or its owner goes. What fails is
/// shown in an error box.
void ShowAttributes(const QString& tableName, QWidget* owner);
