#include "ui/TextDialog.h"

#include "sql/visibleText.h"
#include "ui/lists.h"
#include "ui/windowPlace.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int TextWidth = 130; ///< characters
constexpr int TextHeight = 34; ///< lines

} // namespace

TextDialog::TextDialog(const QString& title, const QString& text, QWidget* parent)
    : QDialog(parent) {
    setObjectName("dlgText");
    setWindowTitle(title);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    auto* lines = new QPlainTextEdit(VisibleText(text));
    lines->setObjectName("txtLines");
    lines->setAccessibleName(title);
    lines->setReadOnly(true);
    lines->setTabChangesFocus(true);
    lines->setLineWrapMode(QPlainTextEdit::NoWrap);
    auto* close = lists::NewButton("cmdClose", "C&hiudi", {});
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto* all = new QVBoxLayout(this);
    all->addWidget(lines, 1);
    all->addWidget(close, 0, Qt::AlignRight);
    windowPlace::SizeTo(*this, TextWidth, TextHeight);
}
