#include "ui/choiceDialog.h"

#include "ui/mnemonics.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace choiceDialog {

QStringList WithMnemonics(const QStringList& captions) { return ::WithMnemonics(captions, {u'o', u'l'}); }

Buttons NewButtons() {
    Buttons buttons{new QHBoxLayout, new QPushButton("&OK"), new QPushButton("Annu&lla")};
    buttons.ok->setObjectName("cmdOk");
    buttons.ok->setAutoDefault(false);
    buttons.cancel->setObjectName("cmdCancel");
    buttons.cancel->setDefault(true);
    buttons.row->addStretch();
    buttons.row->addWidget(buttons.ok);
    buttons.row->addWidget(buttons.cancel);
    return buttons;
}

} // namespace choiceDialog
