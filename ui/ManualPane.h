#pragma once

#include <QWidget>

class QTextBrowser;

/// The manual, open at a page: its links lead from page to page, "Indice" to the first one, "Indietro" to the one
/// before.
class ManualPane final : public QWidget {
    Q_OBJECT

public:
    /// @param page name of its file below docs/manuale; empty for the first one
    explicit ManualPane(const QString& page, QWidget* parent = nullptr);
};

/// The page of the manual that is about a window, or about the one that it belongs to; empty for those that tell their
/// own, and while an import works.
QString ManualPageOf(const QWidget* window);
