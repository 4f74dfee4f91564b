#include "Window/Theme.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QStyleFactory>
#include <QTranslator>

// The resources of a static library are linked only if somebody asks for them; the macro wants global scope.
static void LinkTranslations()
{
    Q_INIT_RESOURCE(translations);
}

namespace FetchyardClient {

namespace {

QPalette DarkPalette()
{
    const QColor ground(0x1f, 0x21, 0x24);
    const QColor base(0x2a, 0x2c, 0x31);
    const QColor text(0xe6, 0xe8, 0xeb);
    const QColor faint(0x80, 0x86, 0x8e);
    QPalette palette(text, QColor(0x34, 0x37, 0x3c), QColor(0x4a, 0x4e, 0x55), QColor(0x12, 0x13, 0x15),
                     QColor(0x3a, 0x3d, 0x43), text, Qt::white, base, ground);
    palette.setColor(QPalette::AlternateBase, QColor(0x2f, 0x32, 0x37));
    palette.setColor(QPalette::Highlight, QColor(0x2b, 0x57, 0x8f));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x7c, 0xb4, 0xff));
    palette.setColor(QPalette::ToolTipBase, QColor(0x34, 0x37, 0x3c));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, faint);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

QPalette LightPalette()
{
    const QColor ground(0xf3, 0xf4, 0xf6);
    const QColor text(0x1f, 0x22, 0x26);
    const QColor faint(0x8a, 0x8f, 0x96);
    QPalette palette(text, QColor(0xfb, 0xfb, 0xfc), Qt::white, QColor(0x9a, 0x9e, 0xa5),
                     QColor(0xc9, 0xcc, 0xd1), text, Qt::white, Qt::white, ground);
    palette.setColor(QPalette::AlternateBase, QColor(0xf8, 0xf9, 0xfb));
    palette.setColor(QPalette::Highlight, QColor(0xcf, 0xe2, 0xfb));
    palette.setColor(QPalette::HighlightedText, text);
    palette.setColor(QPalette::Link, QColor(0x17, 0x63, 0xc0));
    palette.setColor(QPalette::ToolTipBase, Qt::white);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, faint);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

}  // namespace

bool IsDark(const QPalette& palette)
{
    return palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
}

void ApplyTheme(Theme theme)
{
    // Looked at before the first change.
    static const bool system_is_dark = IsDark(QApplication::palette());
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    const bool is_dark = theme == Theme::Dark || (theme == Theme::System && system_is_dark);
    QApplication::setPalette(is_dark ? DarkPalette() : LightPalette());
}

void ApplyLanguage(const QString& language)
{
    LinkTranslations();
    static auto* const own = new QTranslator();
    static auto* const of_qt = new QTranslator();
    QCoreApplication::removeTranslator(own);
    QCoreApplication::removeTranslator(of_qt);
    const QLocale locale = language.isEmpty() ? QLocale::system() : QLocale(language);
    QLocale::setDefault(locale);
    // English has a file too, of its plurals.
    if (own->load(locale, "fetchyard", "_", ":/translations") || own->load(":/translations/fetchyard_en.qm"))
        QCoreApplication::installTranslator(own);
    if (of_qt->load(locale, "qtbase", "_", QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(of_qt);
}

}  // namespace FetchyardClient
