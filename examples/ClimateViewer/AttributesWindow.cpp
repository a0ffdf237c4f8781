#include "AttributesWindow.h"

#include <lmx/Controls/Legend/lmxMapViewShapeExplorerControl.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QFileInfo>
#include <QWidget>

#include <memory>

void ShowAttributes(const QString& tableName, QWidget* owner) {
    lmx::GuardEvent(owner, [&] {
        auto explorer = std::make_unique<lmx::TMapViewShapeExplorerControl>();
        explorer->Load(tableName);
        explorer->setParent(owner, Qt::Window);
        explorer->setAttribute(Qt::WA_DeleteOnClose);
        explorer->setWindowTitle(QObject::tr("Attributes of %1").arg(QFileInfo(tableName).fileName()));
        explorer.release()->show();
    });
}
