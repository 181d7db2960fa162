#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QString>
#include <functional>

#include "window/class_interface.h"

namespace orv {

inline constexpr const char* kInterfaceService = "org.orvvalis.ClassInterface";
inline constexpr const char* kInterfacePath = "/ClassInterface";
inline constexpr const char* kInterfaceError =
    "org.orvvalis.ClassInterface.Error.";  // Busy, InvalidArgs, Failed, Ended

// The ClassInterface of a window on the session bus, for programs in any language. Introspection tells the four methods
// with their arguments. A call is answered when the view has its data; while the window computes or asks its user,
// calls are refused with the error Busy.
class ClassInterfaceBus : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.orvvalis.ClassInterface")

 public:
  // `busy`: a run is going on. `ended`: the user gave the abort answer in a call. `view` outlives this object.
  ClassInterfaceBus(ClassInterface& view, std::function<bool()> busy, std::function<void()> ended,
                    QObject* parent = nullptr);
  ~ClassInterfaceBus() override;

  // Connects to the bus and takes the name org.orvvalis.ClassInterface, or, where another window has it,
  // org.orvvalis.ClassInterface.window_PID_N. False without a bus; nothing is started or told then.
  bool Register(const QString& address = SessionBusAddress());
  // The name taken; empty without a bus.
  const QString& Service() const { return service_; }

  // Address of the user's session bus, empty when there is none.
  static QString SessionBusAddress();

 public Q_SLOTS:
  Q_SCRIPTABLE void InterFaceXls(const QString& Selection, int FlagOptionToPlot);
  Q_SCRIPTABLE void GlrayonXls(const QString& text, double FactorScale);
  Q_SCRIPTABLE void GlrayonXlsT(const QString& text, int flag);
  Q_SCRIPTABLE void GlEventsXls(const QString& text, double FactorScale);

 private:
  void Do(const std::function<void()>& operation);
  void Refuse(const char* error, const QString& text);
  void Disconnect();

  ClassInterface& view_;
  std::function<bool()> busy_;
  std::function<void()> ended_;
  QString connection_;  // name of this object's own connection
  QString service_;
  bool inCall_ = false;  // a box of a call lets further ones come
};

}  // namespace orv
