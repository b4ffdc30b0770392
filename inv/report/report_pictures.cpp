#include "inv/report/report_pictures.h"

#include "inv/report/html.h"

namespace inv {
namespace {

constexpr size_t kSlotWidth = 84;
constexpr size_t kSlotHeight = 54;
constexpr size_t kSlotGap = 8;
constexpr size_t kSlotsInARow = 8;
// A file that claims more slots is nonsense.
constexpr size_t kMostSlots = 64;

constexpr unsigned kAlmostFull = 90;

std::string number(size_t value) { return std::to_string(value); }

std::string slot_picture(const MemorySlot& slot, size_t x, size_t y) {
  const std::string middle = number(x + kSlotWidth / 2);
  const bool filled = slot.megabytes > 0;
  return "<rect class=\"" + std::string(filled ? "slot filled" : "slot") + "\" x=\"" + number(x) + "\" y=\"" +
         number(y) + "\" width=\"" + number(kSlotWidth) + "\" height=\"" + number(kSlotHeight) +
         "\" rx=\"5\"/>" + "<text class=\"big\" x=\"" + middle + "\" y=\"" + number(y + 24) + "\">" +
         (filled ? readable_memory(slot.megabytes) : "empty") + "</text>" + "<text x=\"" + middle +
         "\" y=\"" + number(y + 42) + "\">" + escaped(slot.type) + "</text>\n";
}

}  // namespace

std::string memory_picture(const std::vector<MemorySlot>& slots) {
  if (slots.empty() || slots.size() > kMostSlots) return "";
  size_t filled = 0;
  std::string drawn;
  for (size_t i = 0; i < slots.size(); ++i) {
    if (slots[i].megabytes > 0) ++filled;
    drawn += slot_picture(slots[i], i % kSlotsInARow * (kSlotWidth + kSlotGap) + 1,
                          i / kSlotsInARow * (kSlotHeight + kSlotGap) + 1);
  }
  const size_t in_a_row = slots.size() < kSlotsInARow ? slots.size() : kSlotsInARow;
  const size_t rows = (slots.size() + kSlotsInARow - 1) / kSlotsInARow;
  const std::string width = number(in_a_row * (kSlotWidth + kSlotGap) - kSlotGap + 2);
  const std::string height = number(rows * (kSlotHeight + kSlotGap) - kSlotGap + 2);
  return "<svg class=\"memory\" role=\"img\" aria-label=\"" + number(filled) + " of " + number(slots.size()) +
         " memory slots are filled\" viewBox=\"0 0 " + width + " " + height + "\" width=\"" + width +
         "\" height=\"" + height + "\">\n" + drawn + "</svg>\n";
}

std::string volume_bar(const Volume& volume) {
  const unsigned used = volume.used_percent();
  return "<svg class=\"bar\" role=\"img\" aria-label=\"" + number(used) +
         " percent used\" viewBox=\"0 0 100 8\" preserveAspectRatio=\"none\"><rect class=\"track\" "
         "width=\"100\" "
         "height=\"8\"/><rect class=\"" +
         (used >= kAlmostFull ? "used almost-full" : "used") + "\" width=\"" + number(used) +
         "\" height=\"8\"/></svg>";
}

std::string volume_line(const std::vector<Volume>& volumes, const std::string& owner) {
  const Volume& volume = volumes.front();
  if (!volume.knows_used()) return "";
  std::string names;
  for (const Volume& one : volumes) names += (names.empty() ? "" : ", ") + isolated(one.name);
  return "<div class=\"volume\"><span>" + owner + names + "</span>" + volume_bar(volume) + "<span>" +
         number(volume.used_percent()) + " % of " + readable_size(volume.bytes) + ", " +
         readable_size(volume.free_bytes) + " free</span></div>\n";
}

bool is_almost_full(const Volume& volume) {
  return volume.knows_used() && volume.used_percent() >= kAlmostFull;
}

std::string share_bar(unsigned percent) {
  return "<svg class=\"bar\" aria-hidden=\"true\" viewBox=\"0 0 100 8\" preserveAspectRatio=\"none\"><rect "
         "class=\"used\" width=\"" +
         number(percent) + "\" height=\"8\"/></svg>";
}

}  // namespace inv
