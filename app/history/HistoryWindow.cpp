#include "app/history/HistoryWindow.h"

#include "db/QirDatabase.h"

#include <QAbstractListModel>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QListView>
#include <QLocale>
#include <QPalette>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>
#include <vector>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// Line n is the state after n steps. All is asked of the component at once: an error must not come while a line is
/// drawn.
class HistoryModel : public QAbstractListModel {
public:
    HistoryModel(const QirDatabase &database, QObject *parent)
        : QAbstractListModel(parent)
        , m_dropped(database.StepsDropped())
        , m_done(database.StepsDone()) {
        const int count = database.StepsCount();
        m_steps.reserve(static_cast<std::size_t>(count));
        for (int step = 1; step <= count; ++step)
            m_steps.emplace_back(database.StepName(step), static_cast<qint64>(database.StepTime(step)));
    }

    int rowCount(const QModelIndex &parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_steps.size()) + 1;
    }
    QVariant data(const QModelIndex &index, int role) const override {
        if (role == Qt::DisplayRole)
            return textOf(index.row());
        if (role == Qt::ForegroundRole && index.row() > m_done)
            return QPalette().color(QPalette::Disabled, QPalette::Text);
        return {};
    }

private:
    QString textOf(int steps) const {
        if (steps == 0)
            return m_dropped ? HistoryWindow::tr("Before the oldest step that is kept")
                             : HistoryWindow::tr("As opened");
        const auto &[name, milliseconds] = m_steps[static_cast<std::size_t>(steps) - 1];
        if (milliseconds <= 0)
            return name;
        const QDateTime time = QDateTime::fromMSecsSinceEpoch(milliseconds);
        const bool isToday = time.date() == QDate::currentDate();
        const QString shown = QLocale().toString(time, isToday ? HistoryWindow::tr("HH:mm:ss")
                                                               : HistoryWindow::tr("yyyy-MM-dd HH:mm:ss"));
        return shown + u"   "_s + name;
    }

    std::vector<std::pair<QString, qint64>> m_steps; // names, and times in milliseconds
    bool m_dropped;
    int m_done;
};

} // namespace

HistoryWindow::HistoryWindow(const QirDatabase &database, QWidget *parent)
    : QDialog(parent)
    , m_list(new QListView(this)) {
    setObjectName(u"history"_s);
    setWindowTitle(tr("History"));
    m_list->setObjectName(u"historyList"_s);
    m_list->setAccessibleName(tr("Steps"));
    m_list->setUniformItemSizes(true);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto *model = new HistoryModel(database, this);
    m_list->setModel(model);
    const QModelIndex current = model->index(database.StepsDone());
    m_list->setCurrentIndex(current);
    m_list->scrollTo(current);
    connect(m_list, &QListView::doubleClicked, this, &HistoryWindow::choose);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton *go = buttons->addButton(tr("&Go There"), QDialogButtonBox::AcceptRole);
    go->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { choose(m_list->currentIndex()); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *lines = new QVBoxLayout(this);
    lines->addWidget(m_list);
    lines->addWidget(buttons);
    resize(420, 400);
}

void HistoryWindow::choose(const QModelIndex &line) {
    if (!line.isValid())
        return;
    m_chosen = line.row();
    accept();
}

} // namespace qir
