#include "ui/Assets.h"

#include "log/Output.h"

#include <QFile>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

static void initAssetResources()
{
    Q_INIT_RESOURCE(pomvar);
}

namespace pomvar {

QByteArray Assets::source(const QString& name, const QColor& tint)
{
    static const bool initialised = (initAssetResources(), true);
    Q_UNUSED(initialised);
    QFile file(QStringLiteral(":/assets/") + name + QStringLiteral(".svg"));
    if (!file.open(QIODevice::ReadOnly))
        fatalStop(concat("Pomvar: missing image asset '", name.toStdString(), "'"));
    QByteArray svg = file.readAll();
    const QColor colour = tint.isValid() ? tint : QColor(Qt::black);
    svg.replace("currentColor", colour.name(QColor::HexRgb).toLatin1());
    if (colour.alphaF() < 1.0) {
        const QByteArray withOpacity =
            QByteArray("<svg opacity=\"") + QByteArray::number(colour.alphaF()) + QByteArray("\" ");
        svg.replace("<svg ", withOpacity);
    }
    return svg;
}

QPixmap Assets::pixmap(const QString& name, QSize size, qreal dpr, const QColor& tint)
{
    QSvgRenderer renderer(source(name, tint));
    QPixmap pixmap(size * dpr);
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter);
    }
    pixmap.setDevicePixelRatio(dpr);
    return pixmap;
}

QSize Assets::naturalSize(const QString& name)
{
    return QSvgRenderer(source(name, {})).defaultSize();
}

QIcon Assets::icon(const QString& name, const QPalette& palette)
{
    QIcon icon;
    for (int side : { 16, 24, 32, 48 }) {
        const QSize size(side, side);
        icon.addPixmap(pixmap(name, size, 1.0, palette.color(QPalette::WindowText)), QIcon::Normal);
        icon.addPixmap(pixmap(name, size, 1.0, palette.color(QPalette::HighlightedText)),
                       QIcon::Active);
        icon.addPixmap(pixmap(name, size, 1.0, palette.color(QPalette::HighlightedText)),
                       QIcon::Selected);
        icon.addPixmap(pixmap(name, size, 1.0, palette.color(QPalette::Disabled, QPalette::Text)),
                       QIcon::Disabled);
    }
    return icon;
}

QIcon Assets::trayIcon(const QColor& colour)
{
    QIcon icon;
    for (int side : { 16, 22, 24, 32, 48, 64 })
        icon.addPixmap(
            pixmap(QStringLiteral("org.pomvar.Pomvar-symbolic"), QSize(side, side), 1.0, colour));
    return icon;
}

bool Assets::isDark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < 128;
}

} // namespace pomvar
