#pragma once

#include <string_view>

/// By which names and identifiers the system and other programs know the control. Hosts keep them
/// in their projects: they never change.
namespace lumodevice::automation {

inline constexpr std::string_view kLibraryName = "LumoDevice";
inline constexpr std::string_view kClassName = "ZANCtrl";
inline constexpr std::string_view kProgId = "LumoDevice.ZANCtrl";
inline constexpr std::string_view kTitle = "LumoDevice ZANCtrl";
inline constexpr std::string_view kVersion = "1.0";  ///< of the interface, not of the program

inline constexpr std::string_view kLibraryId = "266CFC78-265A-4DDD-8113-041E2FDC4E24";
inline constexpr std::string_view kClassId = "52EF8624-A203-4183-BE58-95F882C3B1A9";
/// The dispatch interface with the members.
inline constexpr std::string_view kInterfaceId = "729E150A-25D4-4AC7-BE35-4B68B413E93A";
/// The event interface, which has none.
inline constexpr std::string_view kEventsId = "901EB5C1-16E6-40BB-9567-C2E28DF19ECE";
/// The records, in the order of kRecords.
inline constexpr std::string_view kRecordIds[] = {"1B9BE119-D1C9-4B73-B588-01DF32E8A385",
                                                  "BE5BF7CB-5156-4EAB-85F4-F5CE144D22F2"};

/// How a container has to treat the control: it draws itself anew in another size, cannot be linked
/// to, is active inside out and as soon as it is visible, and wants its site first (OLEMISC_...).
inline constexpr unsigned kMiscStatus = 0x20191;

}  // namespace lumodevice::automation
