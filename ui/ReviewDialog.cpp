#include "ui/ReviewDialog.h"

#include "core/Operator.h"
#include "ui/windowPlace.h"
#include "ui/WrappedLabel.h"

#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int ReviewWidth = 100; ///< characters
constexpr int ReviewHeight = 18; ///< lines

} // namespace

QPlainTextEdit* NewReviewList(const QStringList& lines) {
    auto* list = new QPlainTextEdit(lines.join(u'\n'));
    list->setObjectName("txtList");
    list->setAccessibleName("Elenco da controllare");
    list->setReadOnly(true);
    list->setTabChangesFocus(true);
    list->setLineWrapMode(QPlainTextEdit::NoWrap);
    const QFontMetrics metrics = list->fontMetrics();
    list->setMinimumSize(metrics.averageCharWidth() * ReviewWidth / 2, metrics.lineSpacing() * ReviewHeight / 2);
    return list;
}

QDialogButtonBox* YesAndNo(QDialog& dialog) {
    auto* buttons = new QDialogButtonBox;
    QPushButton* yes = buttons->addButton("&Sì", QDialogButtonBox::YesRole);
    yes->setObjectName("cmdYes");
    yes->setAutoDefault(false);
    QPushButton* no = buttons->addButton("&No", QDialogButtonBox::NoRole);
    no->setObjectName("cmdNo");
    no->setDefault(true);
    no->setFocus();
    QObject::connect(yes, &QPushButton::clicked, &dialog, &QDialog::accept);
    QObject::connect(no, &QPushButton::clicked, &dialog, &QDialog::reject);
    return buttons;
}

ReviewDialog::ReviewDialog(const QString& question, const QStringList& lines, QWidget* parent)
    : QDialog(parent) {
    setObjectName("dlgReview");
    setWindowTitle(QuadrixCaption);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto* text = new WrappedLabel(question);
    text->setObjectName("lblQuestion");
    auto* all = new QVBoxLayout(this);
    all->addWidget(NewReviewList(lines), 1);
    all->addWidget(text);
    all->addWidget(YesAndNo(*this));
    windowPlace::SizeTo(*this, ReviewWidth, ReviewHeight + 6);
}
