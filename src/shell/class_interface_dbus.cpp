#include "shell/class_interface_dbus.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QFileInfo>
#include <QUuid>
#include <new>
#include <utility>

#include "numerics/failure.h"

namespace orv {
namespace {

constexpr int kMostWindows = 64;  // of one process

// Takes the plain name, or one with the process and a number behind it.
QString TakeName(const QDBusConnection& bus) {
  const auto take = [&](const QString& name) {
    const auto reply = bus.interface()->registerService(name, QDBusConnectionInterface::DontQueueService,
                                                        QDBusConnectionInterface::DontAllowReplacement);
    return reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
  };
  if (take(kInterfaceService)) return kInterfaceService;
  for (int window = 1; window <= kMostWindows; ++window) {
    QString name =
        QString("%1.window_%2_%3").arg(kInterfaceService).arg(QCoreApplication::applicationPid()).arg(window);
    if (take(name)) return name;
  }
  return {};
}

}  // namespace

ClassInterfaceBus::ClassInterfaceBus(ClassInterface& view, std::function<bool()> busy, std::function<void()> ended,
                                     QObject* parent)
    : QObject(parent), view_(view), busy_(std::move(busy)), ended_(std::move(ended)) {}

ClassInterfaceBus::~ClassInterfaceBus() {
  Disconnect();
}

QString ClassInterfaceBus::SessionBusAddress() {
  QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
  if (!address.isEmpty()) return address;
  const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
  const QString socket = folder + "/bus";
  return !folder.isEmpty() && QFileInfo::exists(socket) ? "unix:path=" + socket : QString();
}

bool ClassInterfaceBus::Register(const QString& address) {
  Disconnect();
  if (address.isEmpty()) return false;
  // A connection of this window's own: another window of the process has its name and its object apart.
  connection_ = "ClassInterface" + QUuid::createUuid().toString(QUuid::Id128);
  QDBusConnection bus = QDBusConnection::connectToBus(address, connection_);
  if (bus.isConnected() && bus.registerObject(kInterfacePath, this, QDBusConnection::ExportScriptableSlots)) {
    service_ = TakeName(bus);
  }
  if (service_.isEmpty()) Disconnect();
  return !service_.isEmpty();
}

void ClassInterfaceBus::Disconnect() {
  if (connection_.isEmpty()) return;
  QDBusConnection::disconnectFromBus(connection_);
  connection_.clear();
  service_.clear();
}

void ClassInterfaceBus::Refuse(const char* error, const QString& text) {
  if (calledFromDBus()) sendErrorReply(QString(kInterfaceError) + error, text);
}

void ClassInterfaceBus::Do(const std::function<void()>& operation) {
  if (inCall_ || (busy_ && busy_())) return Refuse("Busy", "A run is going on.");
  struct Mark {
    explicit Mark(bool& mark) : mark_(mark) { mark_ = true; }
    ~Mark() { mark_ = false; }
    bool& mark_;
  };
  const Mark mark(inCall_);
  try {
    operation();
  } catch (const RuntimeFailure& failure) {
    const bool argument = failure.number() == FailureNumber::InvalidProcedureCall;
    Refuse(argument ? "InvalidArgs" : "Failed", QString::fromStdString(failure.description()));
  } catch (const std::bad_alloc&) {
    Refuse("Failed", "The memory of this machine does not hold this.");
  } catch (const ProgramEnd&) {
    Refuse("Ended", "The user has ended the program.");
    if (ended_) ended_();
  }
}

void ClassInterfaceBus::InterFaceXls(const QString& Selection, int FlagOptionToPlot) {
  Do([&] { view_.InterFaceXls(Selection.toStdString(), FlagOptionToPlot); });
}

void ClassInterfaceBus::GlrayonXls(const QString& text, double FactorScale) {
  Do([&] { view_.GlrayonXls(text.toStdString(), FactorScale); });
}

void ClassInterfaceBus::GlrayonXlsT(const QString& text, int flag) {
  Do([&] { view_.GlrayonXlsT(text.toStdString(), flag); });
}

void ClassInterfaceBus::GlEventsXls(const QString& text, double FactorScale) {
  Do([&] { view_.GlEventsXls(text.toStdString(), FactorScale); });
}

}  // namespace orv
