#include "ui/ManualPane.h"

#include "ui/lists.h"

#include <QHash>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace {

QUrl UrlOf(const QString& page) { return QUrl("qrc:/docs/manuale/" + page); }

} // namespace

ManualPane::ManualPane(const QString& page, QWidget* parent)
    : QWidget(parent) {
    auto* browser = new QTextBrowser;
    browser->setObjectName("txtManual");
    browser->setAccessibleName("Manuale");
    browser->setSource(UrlOf(page.isEmpty() ? QString("README.md") : page));
    auto* contents = lists::NewButton("cmdContents", "&Indice", "Mostra l'indice del manuale");
    auto* back = lists::NewButton("cmdBack", "Indie&tro", "Torna alla pagina di prima");
    back->setEnabled(false);
    connect(contents, &QPushButton::clicked, browser, [browser] { browser->setSource(UrlOf("README.md")); });
    connect(back, &QPushButton::clicked, browser, &QTextBrowser::backward);
    connect(browser, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(contents);
    buttons->addWidget(back);
    buttons->addStretch();
    auto* all = new QVBoxLayout(this);
    all->addWidget(browser, 1);
    all->addLayout(buttons);
    setFocusProxy(browser);
}

QString ManualPageOf(const QWidget* window) {
    static const QHash<QString, QString> pages{
        {"frmImport", "importare.md"},
        {"frmResult", "importare.md"},
        {"frmHistory", "importare.md"},
        {"frmReset", "importare.md"},
        {"frmSource", "origini-e-sorgenti.md"},
        {"frmInspect", "origini-e-sorgenti.md"},
        {"frmCodes", "codici.md"},
        {"frmSequence", "sequenze-e-fusione.md"},
        {"dlgError", "problemi.md"},
        {"frmHelp", {}},
        {"frmManual", {}},
        {"frmProgress", {}},
    };
    for (; window != nullptr; window = window->parentWidget()) {
        if (const auto page = pages.constFind(window->objectName()); page != pages.cend()) {
            return *page;
        }
    }
    return {};
}
