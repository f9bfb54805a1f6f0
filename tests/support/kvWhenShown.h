#pragma once

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

/*!
    Acts on the first visible top-level widget of type Widget (a modal window run by exec())
    that \a accepts. If none turns up within five seconds, or the action leaves it open for
    five seconds, the open modal dialogs are closed, so that the test fails instead of hanging.
*/
template <typename Widget>
void whenShown(std::function<bool(Widget *)> accepts, std::function<void(Widget *)> action)
{
    auto *timer = new QTimer;
    auto tries = std::make_shared<int>(0);
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, [timer, tries, accepts, action]() {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            auto *found = qobject_cast<Widget *>(widget);
            if (found && found->isVisible() && accepts(found)) {
                timer->stop();
                timer->deleteLater();
                QTimer::singleShot(5000, qApp, [guard = QPointer<QWidget>(found)]() {
                    while (guard && guard->isVisible()) {
                        auto *modal = qobject_cast<QDialog *>(QApplication::activeModalWidget());
                        if (!modal)
                            return;
                        modal->done(-1);
                    }
                });
                action(found);
                return;
            }
        }
        if (++*tries < 500)
            return;
        timer->stop();
        timer->deleteLater();
        if (auto *modal = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
            modal->done(-1);
    });
    timer->start();
}

//! \overload Acts on the first visible top-level widget of type Widget.
template <typename Widget>
void whenShown(std::function<void(Widget *)> action)
{
    whenShown<Widget>([](Widget *) { return true; }, std::move(action));
}
