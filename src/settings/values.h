#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace skyhaul {

// Says where a password is kept; the password itself is not in the settings. All zero: there is
// none. See settings/password.h.
using SecretMarker = std::array<char, 40>;

// The settings that the program works with, in the order of their table (settings/table.h),
// which has their names, sizes and defaults. Texts hold no zero bytes; flags are 0 or 1. The record
// starts empty: DefaultSettings() and LoadSettings() fill it.
struct SettingValues {
  std::string pilot_list_name;
  std::string pilot_list_dir;
  std::string google_dir;
  std::string comp_dir;
  std::string ozi_dir;
  std::string track_log_dir;
  std::string waypoint_dir;
  std::string ctr_dir;
  std::string trace_dir;
  std::string baudrate;
  std::string port_name;
  int32_t port = 0;
  int32_t auto_set_port = 0;
  int32_t use_fai_max_distance_rules = 0;
  int32_t log_filter = 0;
  int32_t log_export_ext = 0;
  int32_t log_import_ext = 0;
  int32_t wpt_export_ext = 0;
  int32_t wpt_import_ext = 0;
  int32_t comp_time_start = 0;
  int32_t comp_time_stop = 0;
  int32_t comp_wpt_nnn = 0;
  int32_t comp_mode = 0;
  int32_t comp_special = 0;
  int32_t track_gap_time = 0;
  int32_t add_igc_to_comp_out = 0;
  int32_t add_kml_to_comp_out = 0;
  int32_t loop_flight_gap_m = 0;
  int32_t vario_filter = 0;
  int32_t timestamp_filter = 0;
  int32_t download_filter = 0;
  int32_t flymaster_pwr_off = 0;
  int32_t utc_offset_for_tn = 0;
  std::string igc_dir;
  std::string igc_pilot_name;
  std::string igc_flight_no;
  std::string igc_contest_id;
  std::string igc_glider_type;
  std::string igc_glider_id;
  std::string igc_site;
  std::string igc_class;
  int32_t igc_save_mask = 0;
  int32_t igc_add_enl = 0;
  std::string olc_dir;
  std::string olc_first_name;
  std::string olc_last_name;
  std::string olc_birth_date;
  std::string olc_glider_class;
  std::string olc_glider_type;
  std::string olc_call_sign;
  std::string olc_start_place;
  std::string olc_region;
  int32_t olc_long_file_name = 0;
  int32_t dsx_data_mode = 0;
  int32_t csv_abs_time = 0;
  int32_t csv_rel_time = 0;
  int32_t csv_rel_dist = 0;
  int32_t csv_acc_dist = 0;
  int32_t csv_bearing = 0;
  int32_t csv_400deg = 0;
  int32_t csv_speed = 0;
  int32_t csv_vario = 0;
  int32_t ctr_seg_error = 0;
  std::string ftp_address;
  std::string ftp_user_id;
  std::string ftp_remote_name;
  std::string ftp_local_folder;
  int32_t ftp_local_file_ext = 0;
  int32_t ftp_passive_mode = 0;
  std::string skylog_user_id;
  SecretMarker skylog_password = {};
  std::string skylog_model;
  int32_t skylog_class = 0;
  int32_t skylog_tandem = 0;
  int32_t skylog_comp_select = 0;
  int32_t skylog_country = 0;
  int32_t trim_track_start_interval = 0;
  int32_t trim_track_start_distance = 0;
  int32_t trim_track_takeoff_speed = 0;
  int32_t trim_track_takeoff_interval = 0;
  int32_t trim_track_takeoff_adjust = 0;
  int32_t trim_track_sphere_radius = 0;
  int32_t trim_track_sphere_adjust = 0;
  int32_t trim_track_sylinder_radius = 0;
  int32_t trim_track_sylinder_top = 0;
  int32_t trim_track_sylinder_bottom = 0;
  int32_t trim_track_sylinder_adjust = 0;
  int32_t trim_track_landing_speed = 0;
  int32_t trim_track_landing_interval = 0;
  int32_t trim_track_landing_adjust = 0;
  int32_t gps_button_type = 0;
  std::string gps_button_name;
};

}  // namespace skyhaul
