#include "settings/table.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "core/text/letter_case.h"

namespace skyhaul {

namespace {

// A name that is kept free for examples; nothing answers there.
constexpr std::string_view kPlaceholderHost = "ftp.example.com";

constexpr SettingDescriptor Text(std::string_view name, size_t size,
                                 std::string SettingValues::*field, std::string_view value) {
  return {
      .name = name, .kind = ValueKind::kText, .size = size, .text = field, .default_text = value};
}

// No default text: the documents folder is known at run time only.
constexpr SettingDescriptor Folder(std::string_view name, size_t size,
                                   std::string SettingValues::*field) {
  return {.name = name, .kind = ValueKind::kText, .size = size, .text = field, .is_folder = true};
}

constexpr SettingDescriptor Number(std::string_view name, int32_t SettingValues::*field,
                                   int32_t value) {
  return {.name = name,
          .kind = ValueKind::kNumber,
          .size = sizeof(int32_t),
          .number = field,
          .default_number = value};
}

constexpr SettingDescriptor Binary(std::string_view name, size_t size,
                                   SecretMarker SettingValues::*field) {
  return {.name = name, .kind = ValueKind::kBinary, .size = size, .marker = field};
}

// clang-format off
// Names, sizes, defaults and order are those under which settings are stored, so none may change.
// Sizes of texts count the terminating zero.
constexpr std::array<SettingDescriptor, kSettingCount> kSettings = {{
    Folder("PilotListName", 269, &SettingValues::pilot_list_name),
    Folder("PilotListDir", 269, &SettingValues::pilot_list_dir),
    Folder("GoogleDir", 269, &SettingValues::google_dir),
    Folder("CompDir", 269, &SettingValues::comp_dir),
    Folder("OziDir", 269, &SettingValues::ozi_dir),
    Folder("TrackLogDir", 269, &SettingValues::track_log_dir),
    Folder("WaypointDir", 269, &SettingValues::waypoint_dir),
    Folder("CtrDir", 269, &SettingValues::ctr_dir),
    Folder("TraceDir", 269, &SettingValues::trace_dir),
    Text("Baudrate", 11, &SettingValues::baudrate, "9600"),
    Text("PortName", 80, &SettingValues::port_name, "COM1"),
    Number("Port", &SettingValues::port, 1),
    Number("AutoSetPort", &SettingValues::auto_set_port, 0),
    Number("UseFaiMaxDistanceRules", &SettingValues::use_fai_max_distance_rules, 1),
    Number("LogFilter", &SettingValues::log_filter, 1),
    Number("LogExportExt", &SettingValues::log_export_ext, 1),
    Number("LogImportExt", &SettingValues::log_import_ext, 1),
    Number("WptExportExt", &SettingValues::wpt_export_ext, 1),
    Number("WptImportExt", &SettingValues::wpt_import_ext, 1),
    Number("CompTimeStart", &SettingValues::comp_time_start, 555674400),
    Number("CompTimeStop", &SettingValues::comp_time_stop, 0),
    Number("CompWptNNN", &SettingValues::comp_wpt_nnn, 0),
    Number("CompMode", &SettingValues::comp_mode, 0),
    Number("CompSpecial", &SettingValues::comp_special, 0),
    Number("TrackGapTime", &SettingValues::track_gap_time, 1200),
    Number("AddIgcToCompOut", &SettingValues::add_igc_to_comp_out, 0),
    Number("AddKmlToCompOut", &SettingValues::add_kml_to_comp_out, 0),
    Number("LoopFlightGap", &SettingValues::loop_flight_gap_m, 800),
    Number("VarioFilter", &SettingValues::vario_filter, 0),
    Number("TimestampFilter", &SettingValues::timestamp_filter, 0),
    Number("DownloadFilter", &SettingValues::download_filter, 0),
    Number("FlymasterPwrOff", &SettingValues::flymaster_pwr_off, 0),
    Number("UtcOffsetForTN", &SettingValues::utc_offset_for_tn, 0),
    Folder("IgcDir", 269, &SettingValues::igc_dir),
    Text("IgcPilotName", 80, &SettingValues::igc_pilot_name, "None"),
    Text("IgcFlightNo", 80, &SettingValues::igc_flight_no, "1"),
    Text("IgcContestId", 80, &SettingValues::igc_contest_id, "1"),
    Text("IgcGliderType", 80, &SettingValues::igc_glider_type, "None"),
    Text("IgcGliderId", 80, &SettingValues::igc_glider_id, "None"),
    Text("IgcSite", 80, &SettingValues::igc_site, "None"),
    Text("IgcClass", 80, &SettingValues::igc_class, "None"),
    Number("IgcSaveMask", &SettingValues::igc_save_mask, 5),
    Number("IgcAddEnl", &SettingValues::igc_add_enl, 0),
    Folder("OlcDir", 269, &SettingValues::olc_dir),
    Text("OlcFirstName", 80, &SettingValues::olc_first_name, ""),
    Text("OlcLastName", 80, &SettingValues::olc_last_name, ""),
    Text("OlcBirthDate", 80, &SettingValues::olc_birth_date, ""),
    Text("OlcGliderClass", 80, &SettingValues::olc_glider_class, ""),
    Text("OlcGliderType", 80, &SettingValues::olc_glider_type, ""),
    Text("OlcCallSign", 80, &SettingValues::olc_call_sign, ""),
    Text("OlcStartPlace", 80, &SettingValues::olc_start_place, ""),
    Text("OlcRegion", 80, &SettingValues::olc_region, ""),
    Number("OlcLongFileName", &SettingValues::olc_long_file_name, 0),
    Number("DsxDataMode", &SettingValues::dsx_data_mode, 0),
    Number("CsvAbsTime", &SettingValues::csv_abs_time, 0),
    Number("CsvRelTime", &SettingValues::csv_rel_time, 0),
    Number("CsvRelDist", &SettingValues::csv_rel_dist, 0),
    Number("CsvAccDist", &SettingValues::csv_acc_dist, 0),
    Number("CsvBearing", &SettingValues::csv_bearing, 0),
    Number("Csv400deg", &SettingValues::csv_400deg, 0),
    Number("CsvSpeed", &SettingValues::csv_speed, 0),
    Number("CsvVario", &SettingValues::csv_vario, 0),
    Number("CtrSegError", &SettingValues::ctr_seg_error, 10),
    Text("FtpAddress", 260, &SettingValues::ftp_address, kPlaceholderHost),
    Text("FtpUserId", 260, &SettingValues::ftp_user_id, kPlaceholderHost),
    Text("FtpRemoteName", 260, &SettingValues::ftp_remote_name, ""),
    Folder("FtpLocalFolder", 260, &SettingValues::ftp_local_folder),
    Number("FtpLocalFileExt", &SettingValues::ftp_local_file_ext, 1),
    Number("FtpPassiveMode", &SettingValues::ftp_passive_mode, 0),
    Text("SkylogUserId", 40, &SettingValues::skylog_user_id, ""),
    Binary("SkylogPassword", 40, &SettingValues::skylog_password),
    Text("SkylogModel", 40, &SettingValues::skylog_model, ""),
    Number("SkylogClass", &SettingValues::skylog_class, 0),
    Number("SkylogTandem", &SettingValues::skylog_tandem, 0),
    Number("SkylogCompSelect", &SettingValues::skylog_comp_select, 0),
    Number("SkylogCountry", &SettingValues::skylog_country, 0),
    Number("TrimTrackStartInterval", &SettingValues::trim_track_start_interval, 10),
    Number("TrimTrackStartDistance", &SettingValues::trim_track_start_distance, 1000),
    Number("TrimTrackTakeoffSpeed", &SettingValues::trim_track_takeoff_speed, 6),
    Number("TrimTrackTakeoffInterval", &SettingValues::trim_track_takeoff_interval, 10),
    Number("TrimTrackTakeoffAdjust", &SettingValues::trim_track_takeoff_adjust, 10),
    Number("TrimTrackSphereRadius", &SettingValues::trim_track_sphere_radius, 300),
    Number("TrimTrackSphereAdjust", &SettingValues::trim_track_sphere_adjust, 60),
    Number("TrimTrackSylinderRadius", &SettingValues::trim_track_sylinder_radius, 300),
    Number("TrimTrackSylinderTop", &SettingValues::trim_track_sylinder_top, 100),
    Number("TrimTrackSylinderBottom", &SettingValues::trim_track_sylinder_bottom, 100),
    Number("TrimTrackSylinderAdjust", &SettingValues::trim_track_sylinder_adjust, 30),
    Number("TrimTrackLandingSpeed", &SettingValues::trim_track_landing_speed, 4),
    Number("TrimTrackLandingInterval", &SettingValues::trim_track_landing_interval, 10),
    Number("TrimTrackLandingAdjust", &SettingValues::trim_track_landing_adjust, 10),
    Number("GpsButtonType", &SettingValues::gps_button_type, 40029),
    Text("GpsButtonName", 25, &SettingValues::gps_button_name, "Garmin (RS232)"),
}};
// clang-format on

}  // namespace

std::span<const SettingDescriptor, kSettingCount> SettingTable() {
  return kSettings;
}

const SettingDescriptor* FindSettingByName(std::string_view name) {
  // The names are compared as a registry compares them: without regard to case.
  for (const SettingDescriptor& setting : kSettings) {
    if (EqualIgnoringCase(setting.name, name)) return &setting;
  }
  return nullptr;
}

SettingValues DefaultSettings(const RegistryFunctions& registry) {
  const std::string documents = registry.documents_folder(registry.context);
  SettingValues values;
  for (const SettingDescriptor& setting : kSettings) {
    if (setting.text != nullptr) {
      const std::string_view text = setting.is_folder ? documents : setting.default_text;
      // One byte less than the size, for the terminating zero.
      SetSettingBytes(setting, text.size() < setting.size ? text : std::string_view(), values);
    }
    if (setting.number != nullptr) values.*setting.number = setting.default_number;
    if (setting.marker != nullptr) (values.*setting.marker).fill(0);
  }
  return values;
}

std::string BytesOfSetting(const SettingDescriptor& setting, const SettingValues& values) {
  if (setting.text != nullptr) return values.*setting.text;
  if (setting.number != nullptr) {
    // In the machine's order, in which the registry's functions take numbers.
    return {reinterpret_cast<const char*>(&(values.*setting.number)), sizeof(int32_t)};
  }
  const SecretMarker& marker = values.*setting.marker;
  return {marker.data(), marker.size()};
}

void SetSettingBytes(const SettingDescriptor& setting, std::string_view bytes,
                     SettingValues& values) {
  // Also the bound for both copies below, whose targets have exactly this size.
  bytes = bytes.substr(0, setting.size);
  if (setting.text != nullptr) {
    // No text of the program holds a zero byte, because other programs would read it to there.
    values.*setting.text = bytes.substr(0, bytes.find('\0'));
  } else if (setting.number != nullptr) {
    values.*setting.number = 0;
    std::memcpy(&(values.*setting.number), bytes.data(), bytes.size());
  } else {
    SecretMarker& marker = values.*setting.marker;
    marker.fill(0);
    std::copy(bytes.begin(), bytes.end(), marker.begin());
  }
}

bool SettingDiffers(const SettingDescriptor& setting, const SettingValues& a,
                    const SettingValues& b) {
  // Bytes rather than values: what is written decides whether something has changed.
  return BytesOfSetting(setting, a) != BytesOfSetting(setting, b);
}

}  // namespace skyhaul
