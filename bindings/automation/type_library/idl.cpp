#include "bindings/automation/type_library/idl.hpp"

#include <array>
#include <cstddef>
#include <sstream>
#include <string_view>

#include "bindings/automation/identity.hpp"
#include "lumodevice/members.hpp"
#include "lumodevice/records.hpp"

namespace lumodevice::automation {

namespace {

/// Of VISA COM, as far as hosts of the control need it. Its type library need not be there, and the
/// system keeps its registration to itself: the interface is not marked for automation, and so is
/// not registered with this library. IO is an IMessage.
constexpr std::string_view kFormattedIO488 = R"(
  [object, uuid(DB8CBF1A-D6D3-11D4-AA51-00A024EE30BD), hidden,
   helpstring("The formatted-I/O object of VISA COM")]
  interface IFormattedIO488 : IUnknown {
    [propget] HRESULT IO([out, retval] IUnknown** value);
    [propputref] HRESULT IO([in] IUnknown* value);
    [propget] HRESULT InstrumentBigEndian([out, retval] VARIANT_BOOL* value);
    [propput] HRESULT InstrumentBigEndian([in] VARIANT_BOOL value);
    HRESULT WriteString([in] BSTR data, [in] VARIANT_BOOL flushAndEND);
    HRESULT WriteNumber([in] VARIANT data, [in] long type, [in] VARIANT_BOOL flushAndEND);
    HRESULT WriteList([in] VARIANT* data, [in] long type, [in] BSTR listSeperator,
                      [in] VARIANT_BOOL flushAndEND);
    HRESULT WriteIEEEBlock([in] BSTR Command, [in] VARIANT data, [in] VARIANT_BOOL flushAndEND);
    HRESULT ReadString([out, retval] BSTR* data);
    HRESULT ReadNumber([in] long type, [in] VARIANT_BOOL flushToEND, [out, retval] VARIANT* data);
    HRESULT ReadList([in] long type, [in] BSTR listSeperator, [out, retval] VARIANT* data);
    HRESULT ReadIEEEBlock([in] long type, [in] VARIANT_BOOL seekToBlock,
                          [in] VARIANT_BOOL flushToEND, [out, retval] VARIANT* data);
    HRESULT FlushWrite([in] VARIANT_BOOL sendEND);
    HRESULT FlushRead();
    HRESULT SetBufferSize([in] long mask, [in] long size);
  }
)";

/// As an argument or a field has it, in the order of Type.
std::string_view typeName(Type type) {
  constexpr std::array<std::string_view, 6> kNames = {"void",  "VARIANT_BOOL", "unsigned char",
                                                      "short", "BSTR",         "IFormattedIO488*"};
  return kNames.at(static_cast<std::size_t>(type));
}

std::string_view kindAttribute(MemberKind kind) {
  constexpr std::array<std::string_view, 4> kAttributes = {"propget, ", "propput, ", "propputref, ",
                                                           ""};
  return kAttributes.at(static_cast<std::size_t>(kind));
}

void write(std::ostream& out, const Record& record, std::string_view id) {
  out << "\n  typedef [uuid(" << id << "), helpstring(\"" << record.help << "\")]\n  struct "
      << record.name << " {\n";
  for (const Field& field : record.fields) {
    out << "    " << typeName(field.type) << ' ' << field.name << ";  // " << field.help << '\n';
  }
  out << "  } " << record.name << ";\n";
}

void write(std::ostream& out, const Member& member) {
  out << "    [id(0x" << std::hex << member.dispatchId << std::dec << "), "
      << kindAttribute(member.kind) << "helpstring(\"" << member.help << "\")]\n    HRESULT "
      << member.name << '(';
  const Argument& argument = member.argument;
  if (argument.passing == Passing::ByReference) {
    out << "[in, out] " << typeName(argument.type) << "* " << argument.name;
  } else if (argument.passing == Passing::ByValue) {
    out << "[in] " << typeName(argument.type) << ' ' << argument.name;
  }
  if (member.result != Type::None) {
    out << (argument.passing == Passing::None ? "" : ", ") << "[out, retval] "
        << typeName(member.result) << "* result";
  }
  out << ");\n";
}

}  // namespace

std::string interfaceDefinition() {
  std::ostringstream out;
  out << "import \"oaidl.idl\";\n\n[uuid(" << kLibraryId << "), version(" << kVersion
      << "), control,\n helpstring(\"LumoDevice " << kVersion
      << ": control of ZAN electronic loads\")]\nlibrary " << kLibraryName
      << " {\n  importlib(\"stdole2.tlb\");\n";
  for (std::size_t i = 0; i < kRecords.size(); ++i) {
    write(out, kRecords.at(i), kRecordIds[i]);
  }
  out << kFormattedIO488;

  out << "\n  [object, uuid(" << kInterfaceId
      << "), dual, oleautomation, hidden, nonextensible,\n   helpstring(\"The members of "
      << kClassName << "\")]\n  interface _" << kClassName << " : IDispatch {\n";
  for (const Member& member : kMemberRows) {
    write(out, member);
  }
  out << "  }\n\n  [uuid(" << kEventsId << "), hidden, helpstring(\"" << kClassName
      << " raises no events\")]\n  dispinterface __" << kClassName
      << " {\n    properties:\n    methods:\n  }\n\n  [uuid(" << kClassId
      << "), control, helpstring(\"" << kTitle << "\")]\n  coclass " << kClassName
      << " {\n    [default] interface _" << kClassName
      << ";\n    [default, source] dispinterface __" << kClassName << ";\n  }\n}\n";
  return out.str();
}

}  // namespace lumodevice::automation
