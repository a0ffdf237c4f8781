#include <lmx/DataSources/lmxClimateOrigin.h>

#include <QDir>
#include <QStringList>

namespace lmx {

namespace {

bool IsPlace(const QString& fileName) {
    return QDir::isAbsolutePath(fileName) || fileName.startsWith(QStringLiteral("http://"), Qt::CaseInsensitive) ||
           fileName.startsWith(QStringLiteral("https://"), Qt::CaseInsensitive);
}

} // namespace

QString TClimateOrigin::ToLineage() const {
    QStringList lines = {FileName, Variable, TimeCaption};
    if (!LevelCaption.isEmpty())
        lines += LevelCaption;
    return lines.join(u'\n');
}

std::optional<TClimateOrigin> TClimateOrigin::FromLineage(const QString& lineage) {
    const QStringList lines = lineage.split(u'\n');
    if (lines.size() < 3 || lines.size() > 4 || !IsPlace(lines[0]) || lines[1].isEmpty())
        return std::nullopt;
    return TClimateOrigin{lines[0], lines[1], lines[2], lines.value(3)};
}

} // namespace lmx
