#include "shell/frm_manual.h"

#include <QAction>
#include <QDesktopServices>
#include <QFileInfo>
#include <QTextBrowser>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>

namespace orv {
namespace {

constexpr int kWidth = 860;
constexpr int kHeight = 760;

// A picture is shown no wider than the page.
class ManualPages : public QTextBrowser {
 public:
  using QTextBrowser::QTextBrowser;

 protected:
  QVariant loadResource(int type, const QUrl& name) override {
    QVariant resource = QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::ImageResource) return resource;
    QImage image = resource.metaType().id() == QMetaType::QByteArray ? QImage::fromData(resource.toByteArray())
                                                                     : resource.value<QImage>();
    const int widest = kWidth - 80;
    return image.width() > widest ? image.scaledToWidth(widest, Qt::SmoothTransformation) : image;
  }
};

}  // namespace

frmManual::frmManual(QWidget* parent) : QWidget(parent, Qt::Window) {
  setObjectName("frmManual");
  setWindowTitle("OrvValis manual");
  resize(kWidth, kHeight);
  pages_ = new ManualPages(this);
  pages_->setObjectName("ManualPages");
  pages_->setOpenLinks(true);
  pages_->setOpenExternalLinks(true);
  auto* tools = new QToolBar(this);
  const auto add = [&](const QString& caption, const QKeySequence& key, auto slot, auto enabled) {
    QAction* action = tools->addAction(caption);
    action->setShortcut(key);
    connect(action, &QAction::triggered, pages_, slot);
    if constexpr (!std::is_null_pointer_v<decltype(enabled)>) {
      action->setEnabled(false);
      connect(pages_, enabled, action, &QAction::setEnabled);
    }
  };
  add("Contents", QKeySequence(Qt::ALT | Qt::Key_Home), &QTextBrowser::home, nullptr);
  add("Back", QKeySequence(Qt::ALT | Qt::Key_Left), &QTextBrowser::backward, &QTextBrowser::backwardAvailable);
  add("Forward", QKeySequence(Qt::ALT | Qt::Key_Right), &QTextBrowser::forward, &QTextBrowser::forwardAvailable);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(tools);
  layout->addWidget(pages_);
}

bool frmManual::Open(const std::string& file) {
  const QFileInfo page(QString::fromStdString(file));
  if (!page.isFile()) return false;
  pages_->setSource(QUrl::fromLocalFile(page.absoluteFilePath()), QTextDocument::MarkdownResource);
  return true;
}

}  // namespace orv
