#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/link/channel_list.hpp"
#include "lumodevice/link/identity.hpp"
#include "lumodevice/link/link_state.hpp"
#include "lumodevice/link/links.hpp"
#include "lumodevice/link/turns.hpp"

namespace lumodevice::link {

/// Finds instruments through a VISA library and opens the last one found, through the library or
/// through the VISA COM objects. No failure leaves a connect, none is reported.
class VisaConnection {
 public:
  /// Takes over cmdAutoConnVISA, cmdConnVISA and optVISA.
  VisaConnection(form::Controls& form, io::Visa& visa, LinkState& state, Identity& identity,
                 Links& links, Turns& turns, ChannelList& channels);

  /// cmdAutoConnVISA: searches all instruments and keeps the identity of the one that it opens.
  void AutoConnect();

  /// The same of the instrument at one address (or of those that a search expression finds). An
  /// address in full need not be among what the VISA library finds, and is asked who is there
  /// whatever its interface. `identity`: that instrument alone, "" for any.
  void ConnectTo(std::string_view address, std::string_view identity);

  /// The sessions of a link whose instrument has gone are closed, and it is none any more.
  void leaveLostLink();

  /// cmdConnVISA: searches with the expression in cmbVISARes. Its list keeps growing, and the
  /// identity stays that of the last automatic connect.
  void Connect();

  /// optVISA: leaves the serial link.
  void SelectVisa();

 private:
  /// A search, and the size of the text buffer that its descriptors are kept in.
  struct Search {
    std::string expression;
    std::size_t descriptorSize;
    /// The expression is the address of one instrument, in full.
    bool address = false;
    /// What the instrument must answer; "" for any of ours.
    std::string identity = {};
  };

  void begin();
  void search(const Search& search);
  void connectToAny(const Search& search);
  void takeIntoUse();
  [[nodiscard]] bool probe(VisaLibraryLink& found, const Search& search);
  void probeCandidate(VisaLibraryLink& found, const std::string& descriptor, const Search& search);
  [[nodiscard]] std::string identityOf(VisaLibraryLink& found, const std::string& descriptor,
                                       bool anyInterface);
  [[nodiscard]] std::string askOverCom();
  [[nodiscard]] std::optional<std::string> identityOverCom();
  void noteWhy(FailureKind kind, std::string_view descriptor);
  void noteWhyClosed(io::ViStatus status, const std::string& descriptor);
  [[nodiscard]] bool open(const Search& search);
  [[nodiscard]] std::string foundDescriptor() const;
  void openThroughLibrary(VisaLibraryLink& found);
  void openThroughVisaCom(VisaLibraryLink& found);
  template <typename Ask>
  void showIdentity(Transport& link, const Ask& ask);

  form::Controls& form_;
  io::Visa& visa_;
  LinkState& state_;
  Identity& identity_;
  VisaLibraryLink& library_;
  VisaComLink& com_;
  SerialLink& serial_;
  Turns& turns_;
  ChannelList& channels_;
  Reports& reports_;
  Gate& gate_;
};

}  // namespace lumodevice::link
