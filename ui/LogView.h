#pragma once

#include "ui/LogTail.h"

#include <QTimer>
#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QPushButton;

/// The end of the log of an import, followed as it grows, and a button that opens its folder.
class LogView final : public QWidget {
    Q_OBJECT

public:
    explicit LogView(QWidget* parent = nullptr);

    /// The file that is followed from now on.
    void Follow(const QString& path);
    const QString& Path() const { return m_path; }

public slots:
    /// Reads what is new; done by itself a few times a second while the view is on the screen.
    void Refresh();
    /// Opens the folder of the log in the desktop's file manager.
    void OpenFolder();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void Append(const QString& lines);
    void Forget();
    void ScrollToEnd();

    QPlainTextEdit* m_text;
    QLabel* m_cut;
    QPushButton* m_open;   ///< the folder
    bool m_follows = true; ///< the last line is to be seen: nobody has scrolled up to read
    QString m_path;
    LogTail m_tail{QString()};
    QTimer m_timer;
};
