#include "platform/qt/icon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

#include <array>
#include <functional>
#include <utility>

namespace {

using Tint = std::function<QColor(const QPalette&)>;

// Two colours of the drawings are names for others: the tint, and that of bad frames.
constexpr char kTintInFile[] = "currentColor";
constexpr char kBadFrameInFile[] = "#c83232";

constexpr std::array<const char*, kIconCount> kFileNames = {
    "folder",  "eye",  "sliders", "globe",    "mail",     "help", "play",  "stop", "ok",    "info",
    "warning", "prev", "next",    "bad-prev", "bad-next", "plus", "minus", "copy", "frame",
};

constexpr int kProgramIconSizes[] = {16, 24, 32, 48, 64, 128, 256};

QByteArray ReadDrawing(const char* name) {
    QFile file(QStringLiteral(":/tolvane/icons/%1.svg").arg(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QPalette PaletteFor(QIcon::Mode mode) {
    QPalette palette = QGuiApplication::palette();
    if (mode == QIcon::Disabled) palette.setCurrentColorGroup(QPalette::Disabled);
    return palette;
}

/// Renders a drawing at each painting, so that nothing of an earlier palette or size stays.
class DrawingEngine : public QIconEngine {
public:
    DrawingEngine(QByteArray drawing, Tint tint) : drawing(std::move(drawing)), tint(std::move(tint)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QPalette palette = PaletteFor(mode);
        QByteArray colored = drawing;
        colored.replace(kTintInFile, tint(palette).name().toLatin1());
        colored.replace(kBadFrameInFile, BadFrameColor(palette).name().toLatin1());
        QSvgRenderer(colored).render(painter, rect);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new DrawingEngine(*this); }

private:
    QByteArray drawing;
    Tint tint;
};

/// As the window system takes icons only as pictures, this one says in which sizes.
class ProgramIconEngine : public DrawingEngine {
public:
    using DrawingEngine::DrawingEngine;

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        QList<QSize> sizes;
        for (int size : kProgramIconSizes) sizes.append(QSize(size, size));
        return sizes;
    }

    QIconEngine* clone() const override { return new ProgramIconEngine(*this); }
};

QColor ButtonTextColor(const QPalette& palette) {
    return palette.color(QPalette::ButtonText);
}

QIcon MakeIcon(IconName name, Tint tint) {
    return QIcon(new DrawingEngine(ReadDrawing(kFileNames[static_cast<std::size_t>(name)]), std::move(tint)));
}

IconName NameOf(Status status) {
    switch (status) {
        case Status::Good:
            return IconName::Ok;
        case Status::Warning:
        case Status::Error:
            return IconName::Warning;
        case Status::Neutral:
            break;
    }
    return IconName::Info;
}

}  // namespace

QIcon TintedIcon(IconName name) {
    return MakeIcon(name, ButtonTextColor);
}

QIcon StatusIcon(Status status) {
    return MakeIcon(NameOf(status),
                    [status](const QPalette& palette) { return StatusColor(status, palette); });
}

QIcon ProgramIcon() {
    return QIcon(new ProgramIconEngine(ReadDrawing("tolvane"), ButtonTextColor));
}
