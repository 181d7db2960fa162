#include "model/windows_automation.h"

#ifdef _WIN32

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <utility>
#include <windows.h>

#include "model/excel_values.h"
#include "numerics/failure.h"

namespace orv {
namespace {

// Formulas and member names in English, whatever the languages of user and program.
constexpr LCID kEnglish = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);

void Check(HRESULT result) {
  if (FAILED(result)) throw FailureOfCall(result);
}

std::wstring WideText(const std::string& text) {
  const int size = static_cast<int>(text.size());
  std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0)), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

std::string NarrowText(BSTR text) {
  const int size = static_cast<int>(SysStringLen(text));
  if (size == 0) return {};
  const int bytes = WideCharToMultiByte(CP_UTF8, 0, text, size, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, size, narrow.data(), bytes, nullptr, nullptr);
  return narrow;
}

// The thread's entry to COM. A thread that another party made of the other kind will do as well; it is not ours to
// leave then.
class Apartment {
 public:
  Apartment() : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {
    if (result_ != RPC_E_CHANGED_MODE) Check(result_);
  }
  ~Apartment() {
    if (SUCCEEDED(result_)) CoUninitialize();
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

 private:
  HRESULT result_;
};

// An interface that is given back.
template <class Interface>
class Held {
 public:
  Held() = default;
  ~Held() {
    if (pointer_ != nullptr) pointer_->Release();
  }
  Held(Held&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  Held& operator=(Held&&) = delete;

  Interface* operator->() const { return pointer_; }
  Interface* get() const { return pointer_; }
  // Where a call leaves a reference; once in a life.
  Interface** slot() { return &pointer_; }

 private:
  Interface* pointer_ = nullptr;
};

Held<IDispatch> DispatchOf(IUnknown& object) {
  void* found = nullptr;
  Check(object.QueryInterface(IID_IDispatch, &found));
  Held<IDispatch> dispatch;
  *dispatch.slot() = static_cast<IDispatch*>(found);
  return dispatch;
}

// A VARIANT that frees what it holds.
class Variant {
 public:
  Variant() { VariantInit(&variant_); }
  ~Variant() { VariantClear(&variant_); }
  Variant(Variant&& other) noexcept : variant_(other.variant_) { VariantInit(&other.variant_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  Variant& operator=(Variant&&) = delete;

  VARIANT* operator->() { return &variant_; }
  VARIANT* get() { return &variant_; }

 private:
  VARIANT variant_;
};
static_assert(sizeof(Variant) == sizeof(VARIANT), "a list of them is passed as an array");

class DispatchObject : public AutomationObject {
 public:
  DispatchObject(std::shared_ptr<Apartment> apartment, Held<IDispatch> dispatch)
      : apartment_(std::move(apartment)), dispatch_(std::move(dispatch)) {}

  AutomationValue Get(const std::string& member, const AutomationList& arguments) override {
    // Programs differ in whether something with arguments is a property or a method.
    return Invoke(member, DISPATCH_PROPERTYGET | DISPATCH_METHOD, arguments);
  }
  void Put(const std::string& member, const AutomationValue& value) override {
    Invoke(member, DISPATCH_PROPERTYPUT, {value});
  }
  AutomationValue Call(const std::string& method, const AutomationList& arguments) override {
    return Invoke(method, DISPATCH_METHOD, arguments);
  }
  IDispatch* dispatch() const { return dispatch_.get(); }

 private:
  AutomationValue Invoke(const std::string& member, WORD kind, const AutomationList& arguments);
  DISPID MemberNumber(const std::string& member);
  AutomationValue ValueOf(VARIANT& variant);
  AutomationValue TableOf(SAFEARRAY* array);

  std::shared_ptr<Apartment> apartment_;  // left after the last object is given back
  Held<IDispatch> dispatch_;
};

Variant VariantOf(const AutomationValue& value) {
  Variant variant;
  if (const auto* logical = std::get_if<bool>(&value)) {
    variant->vt = VT_BOOL;
    variant->boolVal = *logical ? VARIANT_TRUE : VARIANT_FALSE;
  } else if (const auto* number = std::get_if<double>(&value)) {
    variant->vt = VT_R8;
    variant->dblVal = *number;
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    const std::wstring wide = WideText(*text);
    variant->vt = VT_BSTR;
    variant->bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    if (variant->bstrVal == nullptr) throw FailureOfCall(E_OUTOFMEMORY);
  } else if (const auto* error = std::get_if<AutomationError>(&value)) {
    variant->vt = VT_ERROR;
    variant->scode = error->code;
  } else if (const auto* object = std::get_if<AutomationReference>(&value)) {
    const auto* own = dynamic_cast<const DispatchObject*>(object->get());
    if (own == nullptr) Raise(FailureNumber::ObjectRequired);
    variant->vt = VT_DISPATCH;
    variant->pdispVal = own->dispatch();
    variant->pdispVal->AddRef();
  }
  return variant;
}

// What a failed call tells of the reason; its texts are freed.
RuntimeFailure FailureOf(HRESULT result, EXCEPINFO& info) {
  if (result != DISP_E_EXCEPTION) return FailureOfCall(result);
  if (info.pfnDeferredFillIn != nullptr) info.pfnDeferredFillIn(&info);
  std::string description = NarrowText(info.bstrDescription);
  SysFreeString(info.bstrSource);
  SysFreeString(info.bstrDescription);
  SysFreeString(info.bstrHelpFile);
  return FailureOfCall(result, info.scode != 0 ? info.scode : info.wCode, std::move(description));
}

DISPID DispatchObject::MemberNumber(const std::string& member) {
  std::wstring name = WideText(member);
  LPOLESTR names = name.data();
  DISPID number = DISPID_UNKNOWN;
  Check(dispatch_->GetIDsOfNames(IID_NULL, &names, 1, kEnglish, &number));
  return number;
}

AutomationValue DispatchObject::Invoke(const std::string& member, WORD kind, const AutomationList& arguments) {
  const DISPID number = MemberNumber(member);
  // Arguments go last first.
  std::vector<Variant> list;
  list.reserve(arguments.size());
  for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
    list.push_back(VariantOf(*argument));
  }
  DISPPARAMS parameters{};
  parameters.cArgs = static_cast<UINT>(list.size());
  parameters.rgvarg = list.empty() ? nullptr : list.front().get();
  DISPID newValue = DISPID_PROPERTYPUT;
  if (kind == DISPATCH_PROPERTYPUT) {
    parameters.cNamedArgs = 1;
    parameters.rgdispidNamedArgs = &newValue;
  }
  Variant answer;
  EXCEPINFO info{};
  UINT argumentAtFault = 0;
  VARIANT* place = kind == DISPATCH_PROPERTYPUT ? nullptr : answer.get();
  const HRESULT result =
      dispatch_->Invoke(number, IID_NULL, kEnglish, kind, &parameters, place, &info, &argumentAtFault);
  if (FAILED(result)) throw FailureOf(result, info);
  return ValueOf(*answer.get());
}

AutomationValue DispatchObject::ValueOf(VARIANT& variant) {
  if (variant.vt == (VT_ARRAY | VT_VARIANT)) return TableOf(variant.parray);
  switch (variant.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return {};
    case VT_BOOL:
      return variant.boolVal != VARIANT_FALSE;
    case VT_BSTR:
      return NarrowText(variant.bstrVal);
    case VT_ERROR:
      return AutomationError{variant.scode};
    case VT_R8:
      return variant.dblVal;
    case VT_UNKNOWN:
    case VT_DISPATCH:
      if (variant.punkVal == nullptr) return {};
      return std::make_shared<DispatchObject>(apartment_, DispatchOf(*variant.punkVal));
    default: {
      // Whole numbers, amounts and dates.
      Variant number;
      Check(VariantChangeTypeEx(number.get(), &variant, kEnglish, 0, VT_R8));
      return number->dblVal;
    }
  }
}

// The elements of a locked array.
class LockedElements {
 public:
  explicit LockedElements(SAFEARRAY* array) : array_(array) {
    void* data = nullptr;
    Check(SafeArrayAccessData(array_, &data));
    elements_ = static_cast<VARIANT*>(data);
  }
  ~LockedElements() { SafeArrayUnaccessData(array_); }
  LockedElements(const LockedElements&) = delete;
  LockedElements& operator=(const LockedElements&) = delete;

  VARIANT& operator[](std::size_t k) const { return elements_[k]; }

 private:
  SAFEARRAY* array_;
  VARIANT* elements_ = nullptr;
};

AutomationValue DispatchObject::TableOf(SAFEARRAY* array) {
  if (SafeArrayGetDim(array) != 2) Raise(FailureNumber::TypeMismatch);
  const auto count = [&](UINT dimension) {
    LONG lower = 0;
    LONG upper = -1;
    Check(SafeArrayGetLBound(array, dimension, &lower));
    Check(SafeArrayGetUBound(array, dimension, &upper));
    return static_cast<std::size_t>(upper - lower + 1);
  };
  auto table = std::make_shared<AutomationTable>();
  table->rows = count(1);
  table->columns = count(2);
  table->values.reserve(table->rows * table->columns);
  const LockedElements elements(array);
  // The array holds column by column.
  for (std::size_t row = 0; row < table->rows; ++row) {
    for (std::size_t column = 0; column < table->columns; ++column) {
      table->values.push_back(ValueOf(elements[column * table->rows + row]));
    }
  }
  return std::shared_ptr<const AutomationTable>(std::move(table));
}

}  // namespace

AutomationReference RunningApplication(const std::string& program) {
  auto apartment = std::make_shared<Apartment>();
  CLSID number{};
  Check(CLSIDFromProgID(WideText(program).c_str(), &number));
  Held<IUnknown> running;
  Check(GetActiveObject(number, nullptr, running.slot()));
  return std::make_shared<DispatchObject>(std::move(apartment), DispatchOf(*running.get()));
}

}  // namespace orv

#endif
