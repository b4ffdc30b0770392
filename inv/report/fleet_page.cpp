#include "inv/report/fleet_page.h"

#include <algorithm>
#include <functional>
#include <map>

#include "inv/base/byte_reader.h"
#include "inv/base/calendars.h"
#include "inv/facts/overview_text.h"
#include "inv/facts/scan.h"
#include "inv/report/html.h"
#include "inv/report/page_frame.h"
#include "inv/report/report_pictures.h"
#include "inv/report/report_tables.h"

namespace inv {
namespace {

using Machines = std::vector<FleetMachine>;

constexpr size_t kMostCounts = 12;
constexpr int64_t kOldAfterDays = 30;
constexpr size_t kManyMachines = 10;  // among fewer, being the only one of a kind means nothing
constexpr const char* kUnknown = "not known";

// The day in "2012-01-18T13:30:45Z".
std::optional<int64_t> day_of(const std::string& time) {
  if (time.size() < 10) return std::nullopt;
  const auto number = [&](size_t start, size_t length) {
    return static_cast<int>(parse_decimal(time.substr(start, length)).value_or(0));
  };
  return days_since_1970({number(0, 4), number(5, 2), number(8, 2)}, "gregorian");
}

std::string age_of(const FleetMachine& machine, int64_t today) {
  struct Age {
    int64_t most_days;
    const char* text;
  };
  constexpr Age kAges[] = {
      {7, "up to a week"}, {30, "up to a month"}, {90, "up to three months"}, {365, "up to a year"}};
  if (!machine.day) return kUnknown;
  for (const Age& age : kAges) {
    if (today - *machine.day <= age.most_days) return age.text;
  }
  return "more than a year";
}

std::string or_unknown(const std::string& text) { return text.empty() ? kUnknown : text; }

using Counts = std::vector<std::pair<std::string, size_t>>;

// How many machines have each text, the most frequent first; those beyond the first dozen are combined.
Counts count(const Machines& machines, const std::function<std::string(const FleetMachine&)>& text_of) {
  std::map<std::string, size_t> by_text;
  for (const FleetMachine& machine : machines) ++by_text[text_of(machine)];
  Counts counts(by_text.begin(), by_text.end());
  std::stable_sort(counts.begin(), counts.end(),
                   [](const auto& one, const auto& other) { return one.second > other.second; });
  if (counts.size() <= kMostCounts) return counts;
  size_t others = 0;
  for (size_t i = kMostCounts - 1; i < counts.size(); ++i) others += counts[i].second;
  counts.resize(kMostCounts - 1);
  counts.emplace_back("others", others);
  return counts;
}

std::string count_section(const std::string& title, const Counts& counts, size_t all) {
  std::string rows;
  for (const auto& [text, number] : counts) {
    rows += "<div class=\"share\"><span>" + isolated(text) + "</span>" +
            share_bar(static_cast<unsigned>(number * 100 / all)) + "<span>" + std::to_string(number) +
            "</span></div>\n";
  }
  return "<section id=\"" + anchor_of(title) + "\"><h2>" + title + "</h2>\n" + rows + "</section>\n";
}

std::string link_to(const FleetMachine& machine) {
  if (machine.page.empty()) return isolated(machine.name);
  return "<a href=\"" + escaped(machine.page) + "\">" + isolated(machine.name) + "</a>";
}

struct FullSpace {
  const FleetMachine* machine;
  std::vector<Volume> volumes;
  unsigned used_percent() const { return volumes.front().used_percent(); }
};

std::vector<FullSpace> full_spaces(const Machines& machines) {
  std::vector<FullSpace> full;
  for (const FleetMachine& machine : machines) {
    for (std::vector<Volume>& volumes : by_space(machine.volumes)) {
      if (is_almost_full(volumes.front())) full.push_back({&machine, std::move(volumes)});
    }
  }
  std::stable_sort(full.begin(), full.end(), [](const FullSpace& one, const FullSpace& other) {
    return one.used_percent() > other.used_percent();
  });
  return full;
}

std::string full_disk_section(const Machines& machines) {
  std::string rows;
  for (const FullSpace& full : full_spaces(machines))
    rows += volume_line(full.volumes, link_to(*full.machine) + ": ");
  return "<section id=\"disks-filling-up\"><h2>Disks filling up</h2>\n" +
         (rows.empty() ? "<p>None.</p>\n" : rows) + "</section>\n";
}

// What deserves attention, each as a clause.
std::vector<std::string> remarks_on(const FleetMachine& machine, const std::map<std::string, size_t>& systems,
                                    size_t machines, int64_t today) {
  std::vector<std::string> remarks;
  if (machine.damaged) remarks.push_back("its file is damaged");
  if (!machine.day) {
    remarks.push_back("when it was scanned is not known");
  } else if (today - *machine.day > kOldAfterDays) {
    remarks.push_back("its scan is " + std::to_string(today - *machine.day) + " days old");
  }
  if (machine.serial.empty()) remarks.push_back("it has no serial number");
  if (machines >= kManyMachines && !machine.system.empty() && systems.at(machine.system) == 1) {
    remarks.push_back("no other has " + machine.system);
  }
  return remarks;
}

std::string remarks_section(const Machines& machines, int64_t today) {
  std::map<std::string, size_t> systems;
  for (const FleetMachine& machine : machines) ++systems[machine.system];
  std::string items;
  for (const FleetMachine& machine : machines) {
    std::string clauses;
    for (const std::string& remark : remarks_on(machine, systems, machines.size(), today)) {
      clauses += (clauses.empty() ? ": " : ", ") + isolated(remark);
    }
    if (!clauses.empty()) items += "<li>" + link_to(machine) + clauses + "</li>\n";
  }
  return "<section id=\"what-stands-out\"><h2>What stands out</h2>\n" +
         (items.empty() ? "<p>Nothing.</p>\n" : "<ul>\n" + items + "</ul>\n") + "</section>\n";
}

// A damaged scan never replaces an undamaged one.
bool is_better(const FleetMachine& scan, const FleetMachine& other) {
  return scan.damaged == other.damaged ? scan.time >= other.time : other.damaged;
}

std::string fullest_percent(const FleetMachine& machine) {
  std::optional<unsigned> most;
  for (const Volume& volume : machine.volumes) {
    if (volume.knows_used()) most = std::max(most.value_or(0), volume.used_percent());
  }
  return most ? std::to_string(*most) : "";
}

PagePart machine_table(const Machines& machines) {
  const std::vector<ReportColumn> columns = {{"Machine", ""},
                                             {"Model", ""},
                                             {"Serial", ""},
                                             {"System", ""},
                                             {"Memory, MB", "", ColumnForm::number},
                                             {"Fullest volume, %", "", ColumnForm::number},
                                             {"Scanned", "", ColumnForm::date}};
  return table_part("Machines", columns, machines.size(), [&machines](size_t i) -> std::vector<std::string> {
    const FleetMachine& machine = machines[i];
    const std::string memory = machine.memory_megabytes > 0 ? std::to_string(machine.memory_megabytes) : "";
    return {link_to(machine),
            isolated(machine.model),
            isolated(machine.serial),
            isolated(machine.system),
            memory,
            fullest_percent(machine),
            machine.timestamp.empty() ? "" : time_element(machine.timestamp)};
  });
}

}  // namespace

FleetMachine fleet_machine(const Inventory& inventory) {
  const Scan scan = scan_of(inventory);
  const Overview overview = overview_of(inventory);
  FleetMachine machine;
  machine.identity = scan.machine;
  machine.name = overview.name;
  machine.model = model_text(overview);
  machine.serial = overview.serial;
  machine.system = overview.os;
  machine.timestamp = overview.timestamp;
  machine.time = scan.time;
  machine.day = day_of(scan.time);
  machine.memory_megabytes = overview.memory.megabytes;
  machine.volumes = overview.volumes;
  machine.damaged = scan.damaged;
  return machine;
}

std::vector<FleetMachine> last_scans(std::vector<FleetMachine> scans) {
  std::map<std::string, FleetMachine> last;
  for (FleetMachine& scan : scans) {
    const auto [found, is_new] = last.try_emplace(scan.identity, scan);
    if (!is_new && is_better(scan, found->second)) found->second = std::move(scan);
  }
  Machines machines;
  for (auto& [identity, machine] : last) machines.push_back(std::move(machine));
  std::stable_sort(machines.begin(), machines.end(),
                   [](const FleetMachine& one, const FleetMachine& other) { return one.name < other.name; });
  return machines;
}

void fleet_page(const std::string& title, const std::vector<FleetMachine>& machines, int64_t today,
                const TextSink& sink) {
  const auto counted = [&](const std::string& name,
                           const std::function<std::string(const FleetMachine&)>& text_of) {
    return count_section(name, count(machines, text_of), machines.size());
  };
  const std::string sections =
      "<div class=\"counts\">\n" +
      counted("Models", [](const FleetMachine& machine) { return or_unknown(machine.model); }) +
      counted("Systems", [](const FleetMachine& machine) { return or_unknown(machine.system); }) +
      counted("Memory",
              [](const FleetMachine& machine) {
                return machine.memory_megabytes > 0 ? readable_memory(machine.memory_megabytes) : kUnknown;
              }) +
      counted("Age of scan", [&](const FleetMachine& machine) { return age_of(machine, today); }) +
      "</div>\n" + full_disk_section(machines) + remarks_section(machines, today);
  framed_page(title,
              "<h1>" + isolated(title) + "</h1><p>" + readable_count(machines.size(), "machine") + "</p>",
              {{sections, {}}, machine_table(machines)}, sink);
}

}  // namespace inv
