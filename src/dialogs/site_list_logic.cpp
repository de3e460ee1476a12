#include "dialogs/site_list_logic.h"

#include <algorithm>
#include <utility>

#include "dialogs/site_list_ids.h"
#include "dialogs/storage_size.h"
#include "l10n/string_table.h"
#include "settings/settings_manager.h"

namespace {

constexpr int kSizeColumn = 1;

const SiteListDesign kStorageDesign{
    .templateId = IDD_SITE_LIST,
    .title = TextId::kStorageSitesTitle,
    .description = TextId::kStorageSitesDescription,
    .comboLabel = TextId::kStorageSitesChoiceLabel,
    .columns = {{.heading = TextId::kColumnWebsite, .width = 190},
                {.heading = TextId::kColumnStorageUsed, .width = 80},
                {.heading = TextId::kColumnStorageAccess, .width = 90}},
    .combos = {{.controlId = IDC_SITE_LIST_CHOICE,
                .permission = SitePermission::kStorage,
                .column = 2}},
    .addTitle = TextId::kStorageAddSiteTitle,
    .addPrompt = TextId::kStorageAddSitePrompt,
    .showsStoredSize = true,
};

const SiteListDesign kCameraMicDesign{
    .templateId = IDD_SITE_LIST_HTTPS,
    .title = TextId::kCameraMicSitesTitle,
    .description = TextId::kCameraMicSitesDescription,
    .comboLabel = TextId::kCameraMicSitesChoiceLabel,
    .columns = {{.heading = TextId::kColumnWebsite, .width = 190},
                {.heading = TextId::kColumnHttps, .width = 130},
                {.heading = TextId::kColumnOther, .width = 130}},
    .combos = {{.controlId = IDC_SITE_LIST_HTTPS_SECURE_CHOICE,
                .permission = SitePermission::kCameraSecure,
                .column = 1},
               {.controlId = IDC_SITE_LIST_HTTPS_OTHER_CHOICE,
                .permission = SitePermission::kCameraOther,
                .column = 2}},
    .addTitle = TextId::kCameraMicAddSiteTitle,
    .addPrompt = TextId::kCameraMicAddSitePrompt,
    .showsStoredSize = false,
};

const SiteListDesign kPeerNetworkingDesign{
    .templateId = IDD_SITE_LIST,
    .title = TextId::kPeerAssistedSitesTitle,
    .description = TextId::kPeerAssistedSitesDescription,
    .comboLabel = TextId::kPeerAssistedSitesChoiceLabel,
    .columns = {{.heading = TextId::kColumnWebsite, .width = 250},
                {.heading = TextId::kColumnNetworkAccess, .width = 110}},
    .combos = {{.controlId = IDC_SITE_LIST_CHOICE,
                .permission = SitePermission::kPeerNetworking,
                .column = 1}},
    .addTitle = TextId::kPeerAssistedAddSiteTitle,
    .addPrompt = TextId::kPeerAssistedAddSitePrompt,
    .showsStoredSize = false,
};

}  // namespace

const SiteListDesign& DesignOf(SiteListKind kind) {
  switch (kind) {
    case SiteListKind::kStorage:
      return kStorageDesign;
    case SiteListKind::kCameraMic:
      return kCameraMicDesign;
    case SiteListKind::kPeerNetworking:
      break;
  }
  return kPeerNetworkingDesign;
}

SiteChoice ChoiceForComboItem(int item) {
  return item >= kChoiceAsk && item <= kChoiceBlock ? static_cast<SiteChoice>(item) : kChoiceNone;
}

int ComboItemForChoice(SiteChoice choice) {
  return choice >= kChoiceAsk && choice <= kChoiceBlock ? static_cast<int>(choice) : -1;
}

TextId ChoiceItemTextId(SiteChoice choice) {
  // Only "Ask" has a longer text in the choice lists.
  return choice == kChoiceAllow || choice == kChoiceBlock ? ChoiceWordId(choice)
                                                          : TextId::kChoiceWordAskPermission;
}

std::optional<size_t> FindSiteRow(const std::vector<std::string>& siteNames, size_t start,
                                  const SiteRowSearch& search,
                                  const std::function<std::string(const std::string&)>& foldCase) {
  const std::string wanted = foldCase(search.text);
  const size_t count = siteNames.size();
  if (count == 0) return std::nullopt;
  if (start >= count) {
    if (!search.wrap) return std::nullopt;
    start = 0;
  }
  const size_t looked = search.wrap ? count : count - start;
  for (size_t step = 0; step < looked; ++step) {
    const size_t row = (start + step) % count;
    const std::string name = foldCase(siteNames[row]);
    if (search.wholeName ? name == wanted : name.starts_with(wanted)) return row;
  }
  return std::nullopt;
}

TextId ChoiceWordId(SiteChoice choice) {
  switch (choice) {
    case kChoiceAllow:
      return TextId::kChoiceWordAllow;
    case kChoiceBlock:
      return TextId::kChoiceWordBlock;
    default:
      return TextId::kChoiceWordAsk;
  }
}

SiteListModel::SiteListModel(SiteListKind kind, SMSettingsManager& settings, SMStringTable& strings,
                             SiteSortKey sortKey)
    : design_(DesignOf(kind)),
      settings_(settings),
      strings_(strings),
      sortKey_(std::move(sortKey)) {}

SiteListModel::Row SiteListModel::MakeRow(const std::string& name, size_t listIndex) const {
  return Row{name, sortKey_(name), listIndex,
             std::vector<std::optional<SiteChoice>>(design_.combos.size()), std::nullopt};
}

namespace {

// A list view with the ascending sort style puts a new row before the first row whose text
// does not sort lower, so among rows that compare equal the one added last comes first.
template <typename RowType>
bool SortsBefore(const RowType& a, const RowType& b) {
  if (a.sortKey != b.sortKey) return a.sortKey < b.sortKey;
  return a.listIndex > b.listIndex;
}

}  // namespace

void SiteListModel::Fill() {
  rows_.clear();
  const std::vector<std::string> names = KnownSiteNames(settings_);
  rows_.reserve(names.size());
  for (size_t index = 0; index < names.size(); ++index) {
    if (!names[index].empty()) rows_.push_back(MakeRow(names[index], index));
  }
  std::sort(rows_.begin(), rows_.end(), SortsBefore<Row>);
  nextListIndex_ = names.size();
}

size_t SiteListModel::InsertSorted(Row row) {
  auto place = std::lower_bound(rows_.begin(), rows_.end(), row, SortsBefore<Row>);
  auto inserted = rows_.insert(place, std::move(row));
  return static_cast<size_t>(inserted - rows_.begin());
}

SiteChoice SiteListModel::ChoiceOf(Row& row, size_t comboIndex) {
  std::optional<SiteChoice>& kept = row.choices[comboIndex];
  if (!kept) kept = ReadSiteChoice(settings_, row.name, design_.combos[comboIndex].permission);
  return *kept;
}

uint64_t SiteListModel::StoredBytesOf(Row& row) {
  if (!row.storedBytes) {
    row.storedBytes = settings_.GetSiteStoredBytes(settings_.storedDataFolder(), row.name);
  }
  return *row.storedBytes;
}

std::string SiteListModel::CellText(size_t rowIndex, int column) {
  Row& row = rows_[rowIndex];
  if (column == 0) return row.name;
  if (design_.showsStoredSize && column == kSizeColumn) {
    return FormatStorageSize(strings_, StoredBytesOf(row));
  }
  for (size_t combo = 0; combo < design_.combos.size(); ++combo) {
    if (design_.combos[combo].column != column) continue;
    const char* word = strings_.GetString(ChoiceWordId(ChoiceOf(row, combo)));
    return word != nullptr ? word : "";
  }
  return "";
}

std::vector<SiteChoice> SiteListModel::CommonChoices(const std::vector<size_t>& selectedRows) {
  std::vector<SiteChoice> common(design_.combos.size(), kChoiceNone);
  std::vector<bool> differs(design_.combos.size(), false);
  size_t differing = 0;
  bool first = true;
  for (size_t rowIndex : selectedRows) {
    const std::string& site = rows_[rowIndex].name;
    for (size_t combo = 0; combo < design_.combos.size(); ++combo) {
      if (differs[combo]) continue;
      SiteChoice choice = ReadSiteChoice(settings_, site, design_.combos[combo].permission);
      if (first) {
        common[combo] = choice;
      } else if (choice != common[combo]) {
        common[combo] = kChoiceNone;
        differs[combo] = true;
        ++differing;
      }
    }
    first = false;
    // Nothing more to learn once every combo has found two rows that differ.
    if (differing == design_.combos.size()) break;
  }
  return common;
}

bool SiteListModel::IsEditable(const std::string& site) const {
  // A known-sites element that names the master settings would otherwise reach the master file
  // and, on removal, the whole settings folder.
  return site != SMSettingsManager::MasterDomain();
}

void SiteListModel::ApplyChoice(size_t comboIndex, SiteChoice choice,
                                const std::vector<size_t>& selectedRows) {
  if (comboIndex >= design_.combos.size() || choice == kChoiceNone) return;
  const SitePermission permission = design_.combos[comboIndex].permission;
  for (size_t rowIndex : selectedRows) {
    Row& row = rows_[rowIndex];
    if (!IsEditable(row.name)) continue;
    // Pin what the row shows now, so that a failed write leaves its text as it was.
    ChoiceOf(row, comboIndex);
    // Stored data that could not be deleted is not reported: the size column is measured again
    // below and still shows it, and these dialogs report nothing else to the user.
    if (ChangeSiteChoice(settings_, row.name, permission, choice) == ChoiceChange::kNotWritten) {
      continue;
    }
    const bool dataRemoved = ChoiceDeletesStoredData(permission, choice);
    // Another program may have listed the site twice: every row of it shows the one file.
    ForEachRowNamed(rowIndex, [&](Row& named) {
      named.choices[comboIndex] = choice;
      if (dataRemoved) named.storedBytes.reset();
    });
  }
}

template <typename Visit>
void SiteListModel::ForEachRowNamed(size_t rowIndex, Visit visit) {
  // Rows of one name have one sort key, so they stand next to each other.
  const std::string name = rows_[rowIndex].name;
  size_t first = rowIndex;
  while (first > 0 && rows_[first - 1].sortKey == rows_[rowIndex].sortKey) --first;
  for (size_t index = first; index < rows_.size(); ++index) {
    if (index > rowIndex && rows_[index].sortKey != rows_[rowIndex].sortKey) break;
    if (rows_[index].name == name) visit(rows_[index]);
  }
}

SiteListModel::AddOutcome SiteListModel::AddFromUser(SMUserPrompts& prompts) {
  std::optional<SMAddSiteAnswer> answer = prompts.RunAddSite(design_.addTitle, design_.addPrompt);
  if (!answer) return {false, std::nullopt};
  return {true, AddSite(answer->site, answer->choice)};
}

std::optional<size_t> SiteListModel::AddSite(const std::string& site, SiteChoice choice) {
  if (site.empty() || !IsEditable(site)) return std::nullopt;
  if (settings_.AddSite(site)) {
    // Ignored on purpose: the row is read back from the store below, so a choice that could
    // not be written shows as the site's defaults rather than as what was asked for.
    for (const SiteListCombo& combo : design_.combos) {
      (void)WriteSiteChoice(settings_, site, combo.permission, choice);
    }
  }
  // The list then shows what a fresh fill would, whatever the writes did: a master file that
  // could not be written still leaves the site listed in memory, and so in the list.
  std::optional<size_t> found;
  for (size_t rowIndex = 0; rowIndex < rows_.size() && !found; ++rowIndex) {
    if (rows_[rowIndex].name == site) found = rowIndex;
  }
  if (found) {
    ForEachRowNamed(*found, [&](Row& named) { named = MakeRow(site, named.listIndex); });
    return found;
  }
  if (!IsKnownSite(settings_, site)) return std::nullopt;
  return InsertSorted(MakeRow(site, nextListIndex_++));
}

std::vector<size_t> SiteListModel::RemoveRows(std::vector<size_t> selectedRows) {
  std::sort(selectedRows.begin(), selectedRows.end());
  std::vector<bool> removed(rows_.size(), false);
  for (size_t rowIndex : selectedRows) {
    if (rowIndex >= rows_.size()) continue;
    const std::string& site = rows_[rowIndex].name;
    // Only sites still listed as known are removed; a row that stays is stepped over.
    if (IsEditable(site) && IsKnownSite(settings_, site) && settings_.RemoveSite(site, true)) {
      removed[rowIndex] = true;
    }
  }
  std::vector<size_t> stayed;
  std::vector<Row> kept;
  kept.reserve(rows_.size());
  for (size_t rowIndex = 0; rowIndex < rows_.size(); ++rowIndex) {
    if (removed[rowIndex]) continue;
    if (std::binary_search(selectedRows.begin(), selectedRows.end(), rowIndex)) {
      stayed.push_back(kept.size());
    }
    kept.push_back(std::move(rows_[rowIndex]));
  }
  rows_ = std::move(kept);
  return stayed;
}
