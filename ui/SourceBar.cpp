#include "ui/SourceBar.h"

#include "ui/ElidedLabel.h"
#include "ui/toolButtons.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QToolButton>
#include <QVBoxLayout>

SourceBar::SourceBar(QWidget* parent)
    : QWidget(parent),
      m_text(new ElidedLabel),
      m_template(NewToolButton("cmdTemplate", "Modello", "Scrive la cartella di lavoro da compilare per l'origine",
                               QKeySequence("Ctrl+M"))) {
    m_text->setObjectName("lblSource");
    m_buttons = {
        NewToolButton("cmdSource", "Scegli...", "Sceglie la sorgente che l'origine legge", QKeySequence("Ctrl+O")),
        NewToolButton("cmdTrySource", "Prova connessione", "Apre la sorgente e la richiude", QKeySequence("Ctrl+T")),
        NewToolButton("cmdInspect", "Esamina...", "Mostra tabelle e colonne accanto a quelle che l'origine legge",
                      QKeySequence("Ctrl+E"))};
    connect(m_buttons[0], &QToolButton::clicked, this, &SourceBar::Edit);
    connect(m_buttons[1], &QToolButton::clicked, this, &SourceBar::Try);
    connect(m_buttons[2], &QToolButton::clicked, this, &SourceBar::Inspect);
    auto* buttons = new QHBoxLayout;
    for (QToolButton* button : m_buttons) {
        buttons->addWidget(button);
    }
    m_template->setMenu(new QMenu(m_template));
    m_template->setPopupMode(QToolButton::InstantPopup);
    m_template->hide();
    buttons->addWidget(m_template);
    buttons->addStretch();
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(m_text);
    all->addLayout(buttons);
    SetSource({});
}

void SourceBar::SetSource(const QString& text) {
    m_text->SetText(text.isEmpty() ? QStringLiteral("Scegliere prima l'origine dei dati") : text);
    for (QToolButton* button : m_buttons) {
        button->setEnabled(!text.isEmpty());
    }
}

void SourceBar::SetChoosable(bool choosable) { m_buttons.first()->setVisible(choosable); }

void SourceBar::SetTemplates(const QStringList& captions) {
    m_template->menu()->clear();
    for (const QString& caption : captions) {
        const int position = static_cast<int>(m_template->menu()->actions().size());
        connect(m_template->menu()->addAction(caption), &QAction::triggered, this,
                [this, position] { emit Template(position); });
    }
    m_template->setVisible(!captions.isEmpty());
}
