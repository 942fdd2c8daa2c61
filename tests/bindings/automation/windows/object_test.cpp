/// The control as an object: what it is asked for, what keeps it, what it keeps.
#include <objsafe.h>
#include <string>
#include <windows.h>

#include "lumodevice/members.hpp"
#include "tests/bindings/automation/windows/control_bench.hpp"

namespace lumodevice::automation {
namespace {

class Object : public ControlBench {
 protected:
  const ComPointer<IDispatch> load = control();
};

TEST_F(Object, everyInterfaceLeadsToEveryOtherAndToOneIdentity) {
  const IID ids[] = {IID_IOleObject,         IID_IOleWindow,
                     IID_IOleInPlaceObject,  IID_IOleInPlaceActiveObject,
                     IID_IOleControl,        IID_IViewObject,
                     IID_IViewObject2,       IID_IQuickActivate,
                     IID_IDispatch,          guidOf(kInterfaceId),
                     IID_IProvideClassInfo,  IID_IProvideClassInfo2,
                     IID_ISupportErrorInfo,  IID_IConnectionPointContainer,
                     IID_IPersist,           IID_IPersistStreamInit,
                     IID_IPersistPropertyBag};
  ComPointer<IUnknown> identity;
  ASSERT_EQ(load->QueryInterface(IID_IUnknown, identity.untypedOut()), S_OK);
  for (const IID& from : ids) {
    ComPointer<IUnknown> one;
    ASSERT_EQ(load->QueryInterface(from, one.untypedOut()), S_OK);
    ComPointer<IUnknown> same;
    ASSERT_EQ(one->QueryInterface(IID_IUnknown, same.untypedOut()), S_OK);
    EXPECT_EQ(same.get(), identity.get());
    for (const IID& to : ids) {
      ComPointer<IUnknown> other;
      EXPECT_EQ(one->QueryInterface(to, other.untypedOut()), S_OK);
    }
  }
  // Nobody may trust an instrument to a page of the web.
  ComPointer<IUnknown> none;
  EXPECT_EQ(load->QueryInterface(IID_IObjectSafety, none.untypedOut()), E_NOINTERFACE);
  EXPECT_EQ(none.get(), nullptr);
  EXPECT_EQ(load->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(Object, describesItself) {
  const auto about = as<IProvideClassInfo2>(load);
  ComPointer<ITypeInfo> info;
  ASSERT_EQ(about->GetClassInfo(info.out()), S_OK);
  windows::Bstr name;
  ASSERT_EQ(info->GetDocumentation(MEMBERID_NIL, name.out(), nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(view(name), L"ZANCtrl");
  GUID events{};
  EXPECT_EQ(about->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
  EXPECT_TRUE(events == guidOf(kEventsId));
  EXPECT_EQ(about->GetGUID(0, &events), E_INVALIDARG);
  EXPECT_EQ(as<ISupportErrorInfo>(load)->InterfaceSupportsErrorInfo(guidOf(kInterfaceId)), S_FALSE);
}

std::wstring wideName(std::string_view name) {
  return {name.begin(), name.end()};
}

INVOKEKIND kindOf(MemberKind kind) {
  constexpr INVOKEKIND kKinds[] = {INVOKE_PROPERTYGET, INVOKE_PROPERTYPUT, INVOKE_PROPERTYPUTREF,
                                   INVOKE_FUNC};
  return kKinds[static_cast<std::size_t>(kind)];
}

VARTYPE vartypeOf(Type type) {
  constexpr VARTYPE kTypes[] = {VT_VOID, VT_BOOL, VT_UI1, VT_I2, VT_BSTR, VT_PTR};
  return kTypes[static_cast<std::size_t>(type)];
}

TEST_F(Object, itsTypeLibraryHasTheMembersInInterfaceOrder) {
  UINT count = 0;
  EXPECT_EQ(load->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 1U);
  ComPointer<ITypeInfo> members;
  ASSERT_EQ(load->GetTypeInfo(0, LOCALE_USER_DEFAULT, members.out()), S_OK);
  EXPECT_EQ(load->GetTypeInfo(1, LOCALE_USER_DEFAULT, ComPointer<ITypeInfo>().out()),
            DISP_E_BADINDEX);
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(members->GetTypeAttr(&attributes), S_OK);
  constexpr WORD kFlags =
      TYPEFLAG_FDUAL | TYPEFLAG_FDISPATCHABLE | TYPEFLAG_FHIDDEN | TYPEFLAG_FNONEXTENSIBLE;
  EXPECT_EQ(attributes->wTypeFlags & kFlags, kFlags);
  const UINT inherited = attributes->cFuncs - static_cast<UINT>(kMemberRows.size());
  members->ReleaseTypeAttr(attributes);
  for (UINT i = 0; i < kMemberRows.size(); ++i) {
    const Member& row = kMemberRows.at(i);
    FUNCDESC* described = nullptr;
    ASSERT_EQ(members->GetFuncDesc(inherited + i, &described), S_OK);
    EXPECT_EQ(static_cast<std::uint32_t>(described->memid), row.dispatchId) << row.name;
    EXPECT_EQ(described->invkind, kindOf(row.kind)) << row.name;
    EXPECT_EQ(described->oVft, static_cast<SHORT>((7 + i) * sizeof(void*))) << row.name;
    EXPECT_EQ(described->elemdescFunc.tdesc.vt, vartypeOf(row.result)) << row.name;
    ASSERT_EQ(described->cParams, row.argument.type == Type::None ? 0 : 1) << row.name;
    if (described->cParams == 1) {
      const TYPEDESC& type = described->lprgelemdescParam[0].tdesc;
      const bool byReference = row.argument.passing == Passing::ByReference;
      EXPECT_EQ(type.vt, byReference ? VARTYPE{VT_PTR} : vartypeOf(row.argument.type)) << row.name;
      if (byReference) {
        EXPECT_EQ(type.lptdesc->vt, vartypeOf(row.argument.type)) << row.name;
      }
    }
    windows::Bstr name;
    windows::Bstr help;
    EXPECT_EQ(members->GetDocumentation(described->memid, name.out(), help.out(), nullptr, nullptr),
              S_OK);
    EXPECT_EQ(view(name), wideName(row.name));
    EXPECT_NE(view(help), L"");
    members->ReleaseFuncDesc(described);
  }
}

TEST_F(Object, itsTypeLibraryHasTheRecordsAsThisWordWidthLaysThem) {
  ComPointer<ITypeInfo> members;
  ASSERT_EQ(load->GetTypeInfo(0, LOCALE_USER_DEFAULT, members.out()), S_OK);
  ComPointer<ITypeLib> library;
  UINT index = 0;
  ASSERT_EQ(members->GetContainingTypeLib(library.out(), &index), S_OK);
  for (std::size_t i = 0; i < kRecords.size(); ++i) {
    ComPointer<ITypeInfo> record;
    ASSERT_EQ(library->GetTypeInfoOfGuid(guidOf(kRecordIds[i]), record.out()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(record->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->typekind, TKIND_RECORD);
    // A longer reference in devButton; BGR has none.
    EXPECT_EQ(attributes->cbSizeInstance, kRecords.at(i).size + (i == 1 ? sizeof(void*) - 4 : 0));
    EXPECT_EQ(attributes->cVars, kRecords.at(i).fields.size());
    record->ReleaseTypeAttr(attributes);
  }
}

/// Another object that has the control inside and answers for it, as containers do.
class Extender final : public IUnknown {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    if (iid == IID_IUnknown) {
      *out = this;
      AddRef();
      return S_OK;
    }
    return inner->QueryInterface(iid, out);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }

  ULONG references = 1;
  ComPointer<IUnknown> inner;
};

TEST_F(Object, canBePartOfAnotherOne) {
  Extender extender;
  ComPointer<IDispatch> wrong;
  EXPECT_EQ(factory()->CreateInstance(&extender, IID_IDispatch, wrong.untypedOut()),
            CLASS_E_NOAGGREGATION);
  ASSERT_EQ(factory()->CreateInstance(&extender, IID_IUnknown, extender.inner.untypedOut()), S_OK);
  EXPECT_EQ(extender.references, 1U);
  ComPointer<IDispatch> members;
  ASSERT_EQ(extender.QueryInterface(IID_IDispatch, members.untypedOut()), S_OK);
  EXPECT_EQ(extender.references, 2U);
  ComPointer<IUnknown> whole;
  EXPECT_EQ(members->QueryInterface(IID_IUnknown, whole.untypedOut()), S_OK);
  EXPECT_EQ(whole.get(), &extender);
  std::int32_t channels = -1;
  EXPECT_EQ(getNumber(*members.get(), L"ChCount", channels), S_OK);
  EXPECT_EQ(channels, 0);
  whole = {};
  members = {};
  EXPECT_EQ(extender.references, 1U);
}

/// A property bag with one property.
class Bag final : public IPropertyBag {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID /*iid*/, void** out) override {
    *out = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE Read(LPCOLESTR name, VARIANT* value, IErrorLog* /*log*/) override {
    if (name != std::wstring(L"Exchanges") || text.empty()) {
      return E_INVALIDARG;
    }
    V_VT(value) = VT_BSTR;
    V_BSTR(value) = SysAllocString(text.c_str());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Write(LPCOLESTR name, VARIANT* value) override {
    EXPECT_STREQ(name, L"Exchanges");
    text = V_BSTR(value);
    return S_OK;
  }

  std::wstring text;
};

TEST_F(Object, keepsItsPropertyInABag) {
  const auto kept = as<IPersistPropertyBag>(load);
  Bag bag;
  EXPECT_EQ(kept->InitNew(), S_OK);
  EXPECT_EQ(kept->Save(&bag, TRUE, FALSE), S_OK);
  EXPECT_EQ(bag.text, L"") << "what is usual need not be saved";
  EXPECT_EQ(kept->Save(&bag, TRUE, TRUE), S_OK);
  EXPECT_EQ(bag.text, L"Interleaved");
  bag.text = L"inturn";
  EXPECT_EQ(kept->Load(&bag, nullptr), S_OK);
  EXPECT_EQ(kept->Save(&bag, TRUE, FALSE), S_OK);
  EXPECT_EQ(bag.text, L"InTurn");
  bag.text = L"Otherwise";
  EXPECT_EQ(kept->Load(&bag, nullptr), E_INVALIDARG);
  bag.text = L"";
  EXPECT_EQ(kept->Load(&bag, nullptr), S_OK) << "a bag from before the property";
  EXPECT_EQ(kept->Load(nullptr, nullptr), E_POINTER);
  CLSID id{};
  EXPECT_EQ(kept->GetClassID(&id), S_OK);
  EXPECT_TRUE(id == guidOf(kClassId));
}

TEST_F(Object, keepsItsPropertyInAStream) {
  const auto one = as<IPersistStreamInit>(load);
  Bag bag;
  bag.text = L"InTurn";
  ASSERT_EQ(as<IPersistPropertyBag>(load)->Load(&bag, nullptr), S_OK);
  EXPECT_EQ(one->IsDirty(), S_FALSE);
  ComPointer<IStream> stream;
  ASSERT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, stream.out()), S_OK);
  EXPECT_EQ(one->Save(stream.get(), TRUE), S_OK);
  ULARGE_INTEGER size{};
  EXPECT_EQ(one->GetSizeMax(&size), S_OK);
  STATSTG about{};
  ASSERT_EQ(stream->Stat(&about, STATFLAG_NONAME), S_OK);
  EXPECT_EQ(about.cbSize.QuadPart, size.QuadPart);

  const auto other = control();
  const auto loaded = as<IPersistStreamInit>(other);
  ASSERT_EQ(stream->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);
  EXPECT_EQ(loaded->Load(stream.get()), S_OK);
  bag.text = L"";
  EXPECT_EQ(as<IPersistPropertyBag>(other)->Save(&bag, TRUE, TRUE), S_OK);
  EXPECT_EQ(bag.text, L"InTurn");
  EXPECT_EQ(loaded->Load(stream.get()), STG_E_DOCFILECORRUPT) << "at the end of the stream";
}

TEST_F(Object, refusesAnotherPropertyOnceItIsInUse) {
  std::int32_t channels = 0;
  ASSERT_EQ(getNumber(*load.get(), L"ChCount", channels), S_OK);
  Bag bag;
  bag.text = L"InTurn";
  EXPECT_EQ(as<IPersistPropertyBag>(load)->Load(&bag, nullptr), E_UNEXPECTED);
  bag.text = L"Interleaved";
  EXPECT_EQ(as<IPersistPropertyBag>(load)->Load(&bag, nullptr), S_OK);
}

TEST_F(Object, hostsCanListenForTheEventsThatThereAreNot) {
  const auto container = as<IConnectionPointContainer>(load);
  ComPointer<IConnectionPoint> point;
  EXPECT_EQ(container->FindConnectionPoint(IID_IDispatch, point.out()), CONNECT_E_NOCONNECTION);
  ASSERT_EQ(container->FindConnectionPoint(guidOf(kEventsId), point.out()), S_OK);
  ComPointer<IConnectionPointContainer> back;
  EXPECT_EQ(point->GetConnectionPointContainer(back.out()), S_OK);
  EXPECT_EQ(back.get(), container.get());

  ComPointer<IEnumConnectionPoints> points;
  ASSERT_EQ(container->EnumConnectionPoints(points.out()), S_OK);
  ComPointer<IConnectionPoint> first;
  EXPECT_EQ(points->Next(1, first.out(), nullptr), S_OK);
  EXPECT_EQ(first.get(), point.get());
  EXPECT_EQ(points->Next(1, ComPointer<IConnectionPoint>().out(), nullptr), S_FALSE);
  EXPECT_EQ(points->Reset(), S_OK);
  EXPECT_EQ(points->Skip(1), S_OK);
  EXPECT_EQ(points->Skip(1), S_FALSE);

  // Any dispatch object will do as a listener: here another control.
  const auto listener = control();
  DWORD cookie = 0;
  EXPECT_EQ(point->Advise(listener.get(), &cookie), S_OK);
  ComPointer<IEnumConnections> connections;
  ASSERT_EQ(point->EnumConnections(connections.out()), S_OK);
  CONNECTDATA connection{};
  EXPECT_EQ(connections->Next(1, &connection, nullptr), S_OK);
  EXPECT_EQ(connection.dwCookie, cookie);
  connection.pUnk->Release();
  EXPECT_EQ(point->Unadvise(cookie), S_OK);
  EXPECT_EQ(point->Unadvise(cookie), CONNECT_E_NOCONNECTION);
  EXPECT_EQ(point->Advise(point.get(), &cookie), CONNECT_E_CANNOTCONNECT);
  // One that is left connected goes with the control.
  EXPECT_EQ(point->Advise(listener.get(), &cookie), S_OK);
}

TEST_F(Object, theServerMakesThisClassAlone) {
  const auto get = exported<GetClassObject>("DllGetClassObject");
  ComPointer<IUnknown> made;
  EXPECT_EQ(get(guidOf(kInterfaceId), IID_IClassFactory, made.untypedOut()),
            CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(get(guidOf(kClassId), IID_IDispatch, made.untypedOut()), E_NOINTERFACE);
  EXPECT_EQ(get(guidOf(kClassId), IID_IClassFactory, nullptr), E_POINTER);
  EXPECT_EQ(exported<Plain>("DllCanUnloadNow")(), S_FALSE) << "a control is there";
}

}  // namespace
}  // namespace lumodevice::automation
