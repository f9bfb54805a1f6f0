// Places a kvKalivo on a form the way a host application does and checks that it answers.
#include <kvKalivo/kvKalivo.h>
#include <kvKalivo/kvError.h>

#include <QApplication>
#include <QTextStream>
#include <QToolBar>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QWidget form;
    auto *calendar = new kvKalivo(&form);
    calendar->resize(640, 480);
    calendar->setView(kvKalivo::kvMonth);
    calendar->setFootnote(QStringLiteral("Gedruckt mit kvKalivo"));
    form.show();
    QApplication::processEvents();

    QTextStream out(stdout);
    const bool ok = calendar->View() == kvKalivo::kvMonth
        && calendar->Footnote() == QStringLiteral("Gedruckt mit kvKalivo")
        && calendar->findChild<QToolBar *>(QStringLiteral("ToolbarMain")) != nullptr
        && kvError::ThreadInstance().Number() == 0;
    out << (ok ? "package host: kvKalivo works" : "package host: unexpected state") << Qt::endl;
    return ok ? 0 : 1;
}
