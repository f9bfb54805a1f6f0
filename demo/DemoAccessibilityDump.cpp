#include "DemoAccessibilityDump.h"

#include <QAccessible>
#include <QApplication>
#include <QMetaEnum>
#include <QSaveFile>
#include <QTextStream>
#include <QWidget>
#include <QWindow>

namespace {

constexpr int MaximumDepth = 40;

QString states(const QAccessible::State &state)
{
    QStringList names;
    if (state.focused)
        names << QStringLiteral("focused");
    if (state.selected)
        names << QStringLiteral("selected");
    if (state.disabled)
        names << QStringLiteral("disabled");
    return names.join(u',');
}

QString oneLine(QString text)
{
    return text.replace(u'\t', u' ').replace(u'\n', u' ');
}

} // namespace

DemoAccessibilityDump::DemoAccessibilityDump(const QString &path, QObject *parent)
    : QObject(parent)
    , m_path(path)
{
    m_timer.setInterval(100);
    connect(&m_timer, &QTimer::timeout, this, &DemoAccessibilityDump::WriteIfChanged);
    m_timer.start();
}

QString DemoAccessibilityDump::Dump()
{
    QString text;
    QTextStream out(&text);
    for (QWidget *window : QApplication::topLevelWidgets()) {
        // Only what is on the screen: a window that is shown but not yet mapped by the window
        // manager would take no click.
        if (!window->isVisible() || !window->windowHandle() || !window->windowHandle()->isExposed())
            continue;
        QAccessibleInterface *top = QAccessible::queryAccessibleInterface(window);
        DumpTree(top, oneLine(top ? top->text(QAccessible::Name) : QString()), out, 0);
    }
    return text;
}

void DemoAccessibilityDump::DumpTree(QAccessibleInterface *object, const QString &window,
                                     QTextStream &out, int depth)
{
    if (!object || !object->isValid() || depth > MaximumDepth)
        return;
    const QAccessible::State state = object->state();
    const QRect place = object->rect();
    if (state.invisible || place.isEmpty())
        return;
    const QAccessibleInterface *parent = object->parent();
    const QObject *named = object->object();
    out << QMetaEnum::fromType<QAccessible::Role>().valueToKey(object->role()) << '\t'
        << oneLine(object->text(QAccessible::Name)) << '\t'
        << oneLine(parent ? parent->text(QAccessible::Name) : QString()) << '\t' << window << '\t'
        << (named ? named->objectName() : QString()) << '\t' << place.x() << '\t' << place.y()
        << '\t' << place.width() << '\t' << place.height() << '\t' << states(state) << '\n';
    for (int index = 0; index < object->childCount(); ++index)
        DumpTree(object->child(index), window, out, depth + 1);
}

void DemoAccessibilityDump::WriteIfChanged()
{
    const QString text = Dump();
    if (text == m_written)
        return;
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return;
    file.write(text.toUtf8());
    if (file.commit())
        m_written = text;
}
