#include "PictureArguments.h"

#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QCommandLineParser>
#include <QFileInfo>

#include <cmath>
#include <cstdint>
#include <optional>
#include <vector>

namespace {

constexpr int MostUnits = 65535; // a side
constexpr double LeastDensity = 0.01;
constexpr double MostDensity = 100;
constexpr double MostSeconds = 86400;

/// Numbers with a decimal point whatever the locale: scripts run everywhere.
std::optional<std::vector<lmx::extended>> Numbers(const QString& text, QChar separator, int count) {
    const QStringList parts = text.split(separator);
    std::vector<lmx::extended> numbers;
    for (const QString& part : parts) {
        lmx::extended number = 0;
        if (!lmx::TryStrToFloat(part, number, lmx::TFormatSettings::Invariant()) || !std::isfinite(number))
            return std::nullopt;
        numbers.push_back(number);
    }
    return static_cast<int>(numbers.size()) == count ? std::optional(numbers) : std::nullopt;
}

class TReading {
public:
    explicit TReading(QStringList& problems) : FProblems(problems) {
        const auto value = [this](const char* name, const char* form) {
            FParser.addOption(QCommandLineOption(QString::fromLatin1(name), QString(), QString::fromLatin1(form)));
        };
        for (const char* name : {"size", "density", "title", "time", "centre", "scale", "extent", "background",
                                 "map-background", "time-limit", "steps", "names", "range"})
            value(name, "value");
        for (const char* name : {"world", "legend", "scale-bar", "compass", "no-marks", "no-annotations",
                                 "allow-missing", "help", "version"})
            FParser.addOption(QCommandLineOption(QString::fromLatin1(name)));
    }

    TPictureArguments Read(const QStringList& arguments) {
        TPictureArguments read;
        if (!FParser.parse(arguments)) {
            FProblems += FParser.errorText();
            return read;
        }
        read.WantsHelp = FParser.isSet("help");
        read.WantsVersion = FParser.isSet("version");
        if (read.WantsHelp || read.WantsVersion)
            return read;
        ReadFiles(read);
        ReadSheet(read.Options);
        ReadView(read.Options);
        ReadSteps(read.Steps);
        read.Options.ShowsLegends = FParser.isSet("legend");
        read.Options.ShowsScale = FParser.isSet("scale-bar");
        read.Options.ShowsCompassRose = FParser.isSet("compass");
        read.Options.ShowsMarks = !FParser.isSet("no-marks");
        read.Options.ShowsAnnotations = !FParser.isSet("no-annotations");
        read.AllowsMissing = FParser.isSet("allow-missing");
        return read;
    }

private:
    void ReadFiles(TPictureArguments& read) {
        const QStringList files = FParser.positionalArguments();
        if (files.size() != 2) {
            FProblems += QStringLiteral("A map document and a file for its picture are needed; %1 given.")
                             .arg(lmx::IntToStr(files.size()));
            return;
        }
        read.Document = files[0];
        read.Picture = files[1];
        const QString suffix = QFileInfo(read.Picture).suffix().toLower();
        if (suffix != QStringLiteral("png") && suffix != QStringLiteral("pdf"))
            FProblems += read.Picture + QStringLiteral(": pictures are written as .png or .pdf.");
    }

    void ReadSheet(lmx::TMapPictureOptions& options) {
        options.Title = FParser.value("title");
        options.Time = FParser.value("time");
        if (FParser.isSet("size")) {
            const auto size = Numbers(FParser.value("size"), u'x', 2);
            const auto isSide = [](lmx::extended side) {
                return side >= 1 && side <= MostUnits && side == std::floor(side);
            };
            if (size && isSide((*size)[0]) && isSide((*size)[1]))
                options.Size = {static_cast<int>((*size)[0]), static_cast<int>((*size)[1])};
            else
                Refuse("size", "width and height as whole numbers from 1 to 65535, such as 1200x675");
        }
        if (const auto density = Number("density", LeastDensity, MostDensity, "a number from 0.01 to 100"))
            options.Density = *density;
        if (const auto seconds = Number("time-limit", 0, MostSeconds, "seconds, from 0 to 86400"))
            options.TimeLimit = static_cast<int>(std::floor(*seconds * 1000));
        if (FParser.isSet("background"))
            options.BackgroundColor = Color("background");
        if (FParser.isSet("map-background"))
            options.MapColor = Color("map-background");
    }

    lmx::TColor32 Color(const char* option) {
        QString text = FParser.value(QString::fromLatin1(option));
        if (text.size() == 7)
            text.insert(1, QStringLiteral("FF"));
        try {
            return lmx::StringToColor32(text);
        } catch (const lmx::EConvertError&) {
            Refuse(option, "a colour as #RRGGBB or #AARRGGBB");
        }
        return 0;
    }

    void ReadView(lmx::TMapPictureOptions& options) {
        const bool hasPlace = FParser.isSet("centre") || FParser.isSet("scale");
        if (int(FParser.isSet("world")) + int(FParser.isSet("extent")) + int(hasPlace) > 1)
            FProblems += QStringLiteral("Only one of --world, --extent and --centre with --scale can be given.");
        if (hasPlace && !(FParser.isSet("centre") && FParser.isSet("scale")))
            FProblems += QStringLiteral("--centre and --scale belong together.");
        if (FParser.isSet("extent")) {
            const auto edges = Numbers(FParser.value("extent"), u',', 4);
            if (edges && (*edges)[0] < (*edges)[2] && (*edges)[1] < (*edges)[3])
                options.Area = lmx::TMapArea((*edges)[0], (*edges)[3], (*edges)[2], (*edges)[1]);
            else
                Refuse("extent", "west,south,east,north with west below east and south below north");
        }
        lmx::TMapPicturePlace place;
        if (FParser.isSet("centre")) {
            if (const auto centre = Numbers(FParser.value("centre"), u',', 2))
                place.Center = {(*centre)[0], (*centre)[1]};
            else
                Refuse("centre", "longitude,latitude or easting,northing");
        }
        if (const auto scale = Number("scale", 1e-4, 1e9, "units to the eye per map unit, above 0"))
            place.Scale = *scale;
        if (hasPlace)
            options.Place = place;
    }

    void ReadSteps(std::optional<TPictureSteps>& steps) {
        if (!FParser.isSet("steps")) {
            if (FParser.isSet("names") || FParser.isSet("range"))
                FProblems += QStringLiteral("--names and --range are for the pictures of --steps.");
            return;
        }
        if (FParser.isSet("time"))
            FProblems += QStringLiteral("Only one of --time and --steps can be given: each step has its own time.");
        steps.emplace();
        ReadStepNumbers(*steps);
        const QString names = FParser.value("names");
        steps->NamesByDate = names == QStringLiteral("date");
        if (FParser.isSet("names") && !steps->NamesByDate && names != QStringLiteral("number"))
            Refuse("names", "number or date");
        steps->FitsRange = FParser.value("range") == QStringLiteral("all");
        if (!FParser.isSet("range") || steps->FitsRange)
            return;
        const auto ends = Numbers(FParser.value("range"), u',', 2);
        if (ends && (*ends)[0] < (*ends)[1])
            steps->Range = lmx::TValueRange(static_cast<double>((*ends)[0]), static_cast<double>((*ends)[1]));
        else
            Refuse("range", "low,high with low below high, or all,");
    }

    // "all", "7", "7-", "7-12".
    void ReadStepNumbers(TPictureSteps& steps) {
        const QString text = FParser.value("steps");
        if (text == QStringLiteral("all"))
            return;
        const QStringList ends = text.split(u'-');
        const bool isOpen = ends.size() == 2 && ends[1].isEmpty();
        std::int32_t last = TPictureSteps::ToTheEnd;
        if (ends.size() <= 2 && lmx::TryStrToInt(ends[0], steps.First) && steps.First >= 1 &&
            (isOpen || lmx::TryStrToInt(ends.back(), last)) && last >= steps.First)
            steps.Last = last;
        else
            Refuse("steps", "all, a step counted from 1, or a first and a last one, such as 7-12,");
    }

    std::optional<double> Number(const char* option, double least, double most, const char* wanted) {
        const QString name = QString::fromLatin1(option);
        if (!FParser.isSet(name))
            return std::nullopt;
        const auto number = Numbers(FParser.value(name), u',', 1);
        if (number && number->front() >= least && number->front() <= most)
            return static_cast<double>(number->front());
        Refuse(option, wanted);
        return std::nullopt;
    }

    void Refuse(const char* option, const char* wanted) {
        const QString name = QString::fromLatin1(option);
        FProblems +=
            QStringLiteral("--%1 \"%2\": %3 is needed.").arg(name, FParser.value(name), QString::fromLatin1(wanted));
    }

    QCommandLineParser FParser;
    QStringList& FProblems;
};

} // namespace

TPictureArguments TPictureArguments::Parse(const QStringList& arguments, QStringList& problems) {
    return TReading(problems).Read(arguments);
}

QString UsageText() {
    return QStringLiteral(R"(Usage: lmx-picture MAP.lmx PICTURE.png|PICTURE.pdf [options]

Paints a map document into a file, or into one for each step in time, without a window.

What is shown (the whole world if nothing is said):
  --world                     the whole world
  --extent W,S,E,N            an area, as large as it fits, in degrees or metres
  --centre X,Y --scale N      a place in the middle, at N units to the eye per map unit

The picture:
  --size WxH                  its size in units of 1/96 inch (1200x675)
  --density N                 pixels in a unit: 1 for screens, 3.125 for 300 per inch (1)
  --background #RRGGBB        what is behind map and texts (#FFFFFF)
  --map-background #RRGGBB    what is behind the layers of the map (that of --background)

Around the map:
  --title TEXT                a title above it
  --time TEXT                 the time that it shows, below it
  --legend                    legends of its visible layers
  --scale-bar                 a scale bar
  --compass                   a compass rose
  --no-marks                  leaves out rulers and query points
  --no-annotations            leaves out the annotations of the document

A picture of each step in time, where layers of the document show climate files:
  --steps all|N|N-M|N-        these steps, counted from 1; the time of each stands below its map
  --names number|date         map.png becomes map-001.png, ..., or map-1961-01.png, ... with as much of the date as
                              tells all steps apart (number)
  --range LOW,HIGH|all        the colours of these layers for this range, or that of all their steps, in all pictures
                              (that of the document)
A climate file that is not where it was is looked for beside the document.

  --allow-missing             paints the map without the layers that cannot be read; those that the document calls
                              decorations of another program are left out with a note in any case
  --time-limit SECONDS        for drawing a picture (60)
  --help, --version

Ends with 0 if the picture has been written, with 1 if it could not be, and with 2 if the arguments are wrong. A picture
that was there before stays unless a new one is written whole. With --steps each picture that has been written is told
on the standard error output, and those written before a failure stay.
)");
}
