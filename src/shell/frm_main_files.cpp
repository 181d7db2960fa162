#include <QDesktopServices>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QStandardPaths>
#include <QUrl>
#include <filesystem>

#include "numerics/installation.h"
#include "numerics/paths.h"
#include "shell/frm_main.h"
#include "shell/frm_manual.h"
#include "view/capture.h"
#include "window/help_texts.h"

// Pictures, prints, folders and files of the main window.
namespace orv {
namespace {

constexpr int kPictureWidth = 320;
constexpr const char* kManual = "docs/README.md";

// Holds the pixels of the picture, which must outlive it.
QImage ImageOf(const Image& picture) {
  return {picture.rgb.data(), picture.width, picture.height, qsizetype{3} * picture.width, QImage::Format_RGB888};
}

}  // namespace

// The data folder may be another one than at the start, or be there again. A run keeps the one it began with.
void frmMain::RefreshDirectory() {
  if (busy_ > 0) return;
  services_.dataFolder = services_.settings.OutputFolder();
  run_.OutputFolder = services_.dataFolder;
  source_.SetDataFolder(services_.dataFolder);
}

std::string frmMain::ImageDirectory() const {
  const std::string pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation).toStdString();
  return ImageFolder(options_.ImageDirectory(), run_.model.WorkbookFolder, pictures);
}

// A picture that cannot be saved ends without a box; the status bar says so.
bool frmMain::SavePicture(const std::string& name, const std::string& folder) {
  const bool saved = View().SavePicture(name, folder, input_->Rectangle());
  if (busy_ > 0) View().Control().Cursor(kBusyPointer);  // a movie goes on while a run is at work
  pickPanel_->setText(QString::fromStdString((saved ? "Saved " : "Not saved: ") + SaveName(name, folder)));
  return saved;
}

void frmMain::ToggleMovie() {
  if (!movie_->mnuFMovieSaveAs(ImageDirectory())) return;
  movie_->Form_Load();
  video_->SetFolder(ImageDirectory());
  video_->Refresh();
  video_->show();
  video_->raise();
}

void frmMain::RunPowerPoint() {
  // The text file that was read or written last.
  const std::string& source = source_.LastTextFile();
  if (source.empty()) {
    services_.dialogs.Tell("There is no text file to copy.", "To run in PowerPoint");
    return;
  }
  const std::string copy = services_.dataFolder + PowerPointFileName(run_.clock.Local());
  std::error_code error;
  std::filesystem::copy_file(PathOf(source), PathOf(copy), std::filesystem::copy_options::overwrite_existing, error);
  if (error) {
    services_.dialogs.Tell("\"" + copy + "\" could not be written: " + error.message(), "To run in PowerPoint",
                           Icon::Critical);
    return;
  }
  Text1_->setText(QString::fromStdString(PowerPointCommand(services_.program, copy)));
  Text1_->selectAll();
  Text1_->copy();
  const Image picture = View().Picture();
  const QPixmap shown = picture.rgb.empty() ? QPixmap() : QPixmap::fromImage(ImageOf(picture));
  Picture1_->setPixmap(shown.isNull() ? shown : shown.scaledToWidth(kPictureWidth, Qt::SmoothTransformation));
  Frame1_->show();
}

void frmMain::Print() {
  QPrinter printer(QPrinter::HighResolution);
  QPrintDialog dialog(&printer, this);
  dialog.setObjectName("PrintDialog");
  if (dialog.exec() != QDialog::Accepted) return;
  const Image picture = View().Picture();
  QPainter painter;
  if (picture.rgb.empty() || !painter.begin(&printer)) {
    services_.dialogs.Tell("error Sub mnuFPrint_Click ", "Print", Icon::Critical);
    run_.prompt.AbortQuestion();
    return;
  }
  const QImage image = ImageOf(picture);
  const QRect page = painter.viewport();
  const QSize size = image.size().scaled(page.size(), Qt::KeepAspectRatio);
  painter.drawImage(QRect(page.topLeft(), size), image);
}

void frmMain::OpenResultFolder() {
  const std::string folder = run_.model.WorkbookFolder.empty() ? services_.dataFolder : run_.model.WorkbookFolder;
  if (!QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(folder)))) {
    services_.dialogs.Tell("No file manager opens \"" + folder + "\".", "Folder");
  }
}

void frmMain::OpenManual() {
  if (manual_ == nullptr) manual_ = new frmManual(this);
  if (!manual_->Open(FindInstalled(services_.program, kManual))) {
    services_.dialogs.Tell("The manual is not beside the program.", "Manual");
    return;
  }
  manual_->show();
  manual_->raise();
}

}  // namespace orv
