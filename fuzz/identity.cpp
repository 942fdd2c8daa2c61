// Any bytes at all as the answer to "*IDN?": the fields are what stands between the commas, or
// none.

#include "lumodevice/link/identity.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/require.hpp"

namespace {

using lumodevice::fuzz::require;

/// The part with this number, from 0; goes through the text character by character.
std::string partOf(std::string_view text, char separator, std::size_t number) {
  std::string part;
  for (const char c : text) {
    if (c == separator) {
      if (number == 0) return part;
      --number;
    } else if (number == 0) {
      part += c;
    }
  }
  return part;
}

std::size_t count(std::string_view text, char wanted) {
  std::size_t found = 0;
  for (const char c : text) found += c == wanted ? 1 : 0;
  return found;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view answer(reinterpret_cast<const char*>(data), size);
  // What an instrument before it has left behind must not show through.
  lumodevice::link::Identity identity;
  identity.setAnswer("OTHER,ZAN,B2,9.8.7");
  identity.ParseIdentity();

  identity.setAnswer(answer);
  require(identity.fields().maker == "OTHER", "an answer alone changes no field");
  identity.ParseIdentity();
  require(identity.answer() == answer, "the answer stays as it came");

  const bool complete = count(answer, ',') >= 3;
  const auto expected = [&](std::size_t number) {
    return complete ? partOf(answer, ',', number) : std::string();
  };
  const auto& fields = identity.fields();
  require(fields.maker == expected(0), "the maker is the first part");
  require(fields.model == expected(1), "the model is the second part");
  require(fields.serialNumber == expected(2), "the serial number is the third part");
  require(fields.firmwareVersion == expected(3), "the firmware version is the fourth part");

  const std::string& version = fields.firmwareVersion;
  for (std::size_t i = 0; i < fields.versionParts.size(); ++i) {
    const bool there = count(version, '.') > 0;
    require(fields.versionParts[i] == (there ? partOf(version, '.', i) : ""),
            "the parts of a version stand between its dots");
  }
  return 0;
}
