// Another program out of which files can be dragged: those that it is called with, by a press anywhere in its window.
#include <QApplication>
#include <QDrag>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

using namespace Qt::StringLiterals;

class Source : public QLabel {
public:
    explicit Source(const QStringList &files)
        : QLabel(files.join(u'\n'))
        , m_files(files) {
        setMinimumSize(200, 100);
    }

protected:
    void mousePressEvent(QMouseEvent *event) override { m_begin = event->position().toPoint(); }
    void mouseMoveEvent(QMouseEvent *event) override {
        const int way = (event->position().toPoint() - m_begin).manhattanLength();
        if (!event->buttons().testFlag(Qt::LeftButton) || way < QApplication::startDragDistance())
            return;
        QList<QUrl> urls;
        for (const QString &file : m_files)
            urls.append(QUrl::fromLocalFile(file));
        auto *offered = new QMimeData;
        offered->setUrls(urls);
        offered->setText(m_files.join(u'\n')); // as file managers add it
        auto *drag = new QDrag(this);
        drag->setMimeData(offered);
        drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::MoveAction);
    }

private:
    QStringList m_files;
    QPoint m_begin;
};

int main(int argc, char *argv[]) {
    const QApplication application(argc, argv);
    Source source(QApplication::arguments().sliced(1));
    source.setWindowTitle(u"Files to drag"_s);
    source.show();
    return QApplication::exec();
}
