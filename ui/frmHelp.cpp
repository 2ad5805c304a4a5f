#include "ui/frmHelp.h"

#include "adapters/mappingPages.h"
#include "app/process.h"
#include "ui/ManualPane.h"
#include "ui/windowPlace.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace {

constexpr int HelpWidth = 120; ///< characters
constexpr int HelpHeight = 40; ///< lines

const char* const Keys = R"(## Tasti

| Tasto | Che cosa fa |
|---|---|
| F1 | questo aiuto; con un pulsante d'importazione a fuoco, che cosa legge; nelle altre finestre, la pagina del manuale che le riguarda |
| Ctrl+O | sceglie la sorgente dell'origine |
| Ctrl+T | prova la connessione |
| Ctrl+E | esamina la sorgente: tabelle e colonne accanto a quelle che l'origine legge |
| Ctrl+M | con l'origine Excel: scrive la cartella di lavoro da compilare |
| F7 | verifica che sorgente e azienda abbiano ciò che serve; non scrive nulla |
| F8 | prova un'importazione: alla fine il database torna com'era |
| F9 | codici dell'origine che attendono il codice di Quadrix |
| F11 | confronta la sorgente con ciò che è in Quadrix e ne apre il verbale; non scrive nulla |
| Ctrl+H | la cronologia: che cosa hanno fatto le importazioni, scarti da correggere e reimportare, riprese |
| lettere, nell'elenco delle origini | cerca l'origine per una parte del nome o del tipo di sorgente |
| Alt e la lettera sottolineata | il campo o il pulsante con quella lettera |

## Da dove cominciare

1. Scegliere azienda e origine, poi la sorgente (Ctrl+O), e provare la connessione (Ctrl+T).
2. Esaminare la sorgente (Ctrl+E): dare un nome a ciò che manca, guardare l'anteprima.
3. Verificare (F7) e provare (F8): l'esito dice quante righe si scriverebbero e quali no, e perché.
4. Importare. Il risultato si apre da sé: righe abbandonate e annotazioni per tipo, da spuntare quando sono fatte.
5. Correggere le righe abbandonate e importarle di nuovo, esse sole, dalla cronologia (Ctrl+H).
6. Confrontare sorgente e Quadrix (F11): il verbale, con le cifre dei due lati e le differenze, è da firmare.
)";

QTextBrowser* NewPage(const QString& name, const QString& accessibleName) {
    auto* page = new QTextBrowser;
    page->setObjectName(name);
    page->setAccessibleName(accessibleName);
    page->setOpenLinks(false);
    return page;
}

/// The mapping page of an origin; what there is to say without one.
QString PageOf(const contract::Origin* origin) {
    if (origin == nullptr) {
        return QStringLiteral("Scegliere un'origine per vedere che cosa legge e dove lo scrive.");
    }
    const QString page = mappingPages::PageOf(*origin);
    return page.isEmpty() ? QStringLiteral("%1: nessuna importazione disponibile in questa versione.").arg(origin->name)
                          : page;
}

} // namespace

frmHelp::frmHelp(const contract::Origin* origin, const QString& procedure, QWidget* parent)
    : QDialog(parent) {
    setObjectName("frmHelp");
    setWindowTitle("Aiuto");
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto* keys = NewPage("txtKeys", "Tasti e primi passi");
    keys->setMarkdown(QString::fromUtf8(Keys));
    auto* mapping = NewPage("txtMapping", "Corrispondenze dell'origine");
    mapping->setMarkdown(PageOf(origin));
    auto* version = NewPage("txtVersion", "Versione");
    version->setPlainText(process::VersionText("quadrix-import"));
    auto* tabs = new QTabWidget;
    auto* manual = new ManualPane(ManualPageOf(parent));
    tabs->addTab(manual, "&Manuale");
    tabs->addTab(keys, "&Primi passi");
    tabs->addTab(mapping, "Co&rrispondenze");
    tabs->addTab(version, "&Versione");
    auto* close = new QPushButton("&Chiudi");
    close->setObjectName("cmdClose");
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(close);
    auto* all = new QVBoxLayout(this);
    all->addWidget(tabs, 1);
    all->addLayout(buttons);
    windowPlace::SizeTo(*this, HelpWidth, HelpHeight);
    if (origin != nullptr && !procedure.isEmpty()) {
        tabs->setCurrentWidget(mapping);
        if (mapping->find(procedure)) {
            mapping->ensureCursorVisible();
        }
    }
}
