#pragma once

#include "ui/ErrorDialog.h"
#include "ui/frmProgress.h"
#include "ui/ReviewDialog.h"
#include "ui/WrappedLabel.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <deque>

/// Sits at the window and answers the dialogs that come up, by clicking their buttons, and records what they said.
class DialogDriver {
public:
    DialogDriver() {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Look(); });
        m_timer.start(1);
    }

    /// The button (its object name) that is clicked in a message box of that text; `Otherwise` for others.
    QHash<QString, QString> Click;
    /// "cmdOk" or "cmdYes", whichever the box has, when empty.
    QString Otherwise;
    std::deque<QString> ErrorClicks;           ///< one per error that asks; past the end "cmdAbort"
    std::deque<std::optional<QString>> Inputs; ///< one per input box; past the end it is given up
    /// Called for a dialog, before it is answered, or again and again for one of another kind; true: leave it alone.
    std::function<bool(QWidget&)> On;

    /// From now on file dialogs are answered with a path, and agreed to when they ask whether to write over it.
    void AnswerFiles(const QString& path) {
        On = [path](QWidget& dialog) {
            auto* box = qobject_cast<QMessageBox*>(&dialog);
            auto* files = qobject_cast<QFileDialog*>(box == nullptr ? &dialog : box->parentWidget());
            if (files != nullptr && box != nullptr) {
                box->button(QMessageBox::Yes)->click();
            } else if (files != nullptr && !files->property("answered").toBool()) {
                files->setProperty("answered", true);
                files->findChild<QLineEdit*>("fileNameEdit")->setText(path);
                QTimer::singleShot(0, files, [files] { static_cast<QDialog*>(files)->accept(); });
            }
            return files != nullptr;
        };
    }

    /// "[i] text", "[!] text", "? text = cmdYes", "review question = cmdYes", "> prompt", "error message", "reported
    /// message", in order.
    QStringList Events;

private:
    void Look() {
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog == nullptr || (On && On(*dialog))) {
            return;
        }
        if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
            AnswerBox(*box);
        } else if (auto* error = qobject_cast<ErrorDialog*>(dialog)) {
            AnswerError(*error);
        } else if (auto* input = qobject_cast<QInputDialog*>(dialog)) {
            AnswerInput(*input);
        } else if (auto* review = qobject_cast<ReviewDialog*>(dialog)) {
            AnswerReview(*review);
        }
    }

    static QPushButton* Button(QWidget& dialog, const QString& name) { return dialog.findChild<QPushButton*>(name); }

    void AnswerBox(QMessageBox& box) {
        QString name = Click.value(box.text(), Otherwise);
        const bool isQuestion = Button(box, "cmdYes") != nullptr;
        if (name.isEmpty() || Button(box, name) == nullptr) {
            name = isQuestion ? "cmdYes" : "cmdOk";
        }
        const QString mark = box.icon() == QMessageBox::Warning ? "[!] " : "[i] ";
        Events.append(isQuestion ? QString("? " + box.text() + " = " + name) : QString(mark + box.text()));
        Button(box, name)->click();
    }

    void AnswerError(ErrorDialog& dialog) {
        const QString message = dialog.findChild<QLabel*>("lblMessage")->text();
        if (QPushButton* ok = Button(dialog, "cmdOk")) {
            Events.append("reported " + message);
            ok->click();
            return;
        }
        QString name = "cmdAbort";
        if (!ErrorClicks.empty()) {
            name = ErrorClicks.front();
            ErrorClicks.pop_front();
        }
        Events.append("error " + message);
        Button(dialog, name)->click();
    }

    void AnswerReview(ReviewDialog& dialog) {
        const QString name = Otherwise.isEmpty() ? "cmdYes" : Otherwise;
        const QString question = dialog.findChild<WrappedLabel*>("lblQuestion")->Text();
        Events.append("review " + question.section('\n', -1) + " = " + name);
        Button(dialog, name)->click();
    }

    void AnswerInput(QInputDialog& dialog) {
        Events.append("> " + dialog.labelText());
        std::optional<QString> text;
        if (!Inputs.empty()) {
            text = Inputs.front();
            Inputs.pop_front();
        }
        if (!text) {
            dialog.reject();
            return;
        }
        dialog.setTextValue(*text);
        dialog.accept();
    }

    QTimer m_timer;
};
