#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/user_prompts.h"
#include "l10n/text_id.h"
#include "settings/site_permissions.h"

class SMSettingsManager;
class SMStringTable;

// The three settings-by-site dialogs share one list; they differ in the permission they edit.
enum class SiteListKind { kStorage, kCameraMic, kPeerNetworking };

struct SiteListColumn {
  TextId heading;
  int width;  // pixels at 96 dots per inch
};

// One choice combo: the permission it edits and the column that shows that permission.
struct SiteListCombo {
  int controlId;
  SitePermission permission;
  int column;
};

struct SiteListDesign {
  int templateId;
  TextId title;
  TextId description;
  TextId comboLabel;
  std::vector<SiteListColumn> columns;
  std::vector<SiteListCombo> combos;
  TextId addTitle;
  TextId addPrompt;
  bool showsStoredSize;  // the storage list's second column
};
const SiteListDesign& DesignOf(SiteListKind kind);

// The combo items and the add-site choices come in the order Ask, Allow, Block, which is the
// order of the choices themselves; anything else is no choice.
SiteChoice ChoiceForComboItem(int item);
int ComboItemForChoice(SiteChoice choice);
// The long text of a combo item, and the short word a row shows.
TextId ChoiceItemTextId(SiteChoice choice);
TextId ChoiceWordId(SiteChoice choice);

// What a list view looks for when the user types in it: a row whose site name begins with the
// typed text (or, for a whole-name search, equals it), upper and lower case alike.
struct SiteRowSearch {
  std::string text;
  bool wholeName;
  bool wrap;  // after the last row, go on from the first up to the start
};
// The first row from `start` on that matches, or nothing. `foldCase` makes upper and lower case
// alike as the system's list views do (SMSystem::FoldCase).
std::optional<size_t> FindSiteRow(const std::vector<std::string>& siteNames, size_t start,
                                  const SiteRowSearch& search,
                                  const std::function<std::string(const std::string&)>& foldCase);

// The key by which a list view of the system orders a text: rows are sorted by the bytes of
// their keys. The Windows program asks the system for it; tests may pass any order.
using SiteSortKey = std::function<std::string(const std::string& siteName)>;

// The rows of one settings-by-site list: the known sites with a name, sorted as a list view
// with the ascending sort style sorts them. Row texts are read when first asked for (only the
// visible rows of a long list are ever drawn) and kept; a change made through the list
// updates what it keeps.
class SiteListModel {
 public:
  SiteListModel(SiteListKind kind, SMSettingsManager& settings, SMStringTable& strings,
                SiteSortKey sortKey);

  const SiteListDesign& design() const { return design_; }

  // Reads the known sites again; every kept text is forgotten.
  void Fill();
  size_t RowCount() const { return rows_.size(); }
  const std::string& SiteAt(size_t row) const { return rows_[row].name; }
  // The text of a cell: the site name, its stored size or the word for one of its choices.
  std::string CellText(size_t row, int column);

  // The choice each combo shows for the selected rows: the common one, or kChoiceNone when
  // the rows differ or none is selected.
  std::vector<SiteChoice> CommonChoices(const std::vector<size_t>& selectedRows);
  // Writes the choice of one combo (by its index in the design) to every selected row. A row's
  // text changes only when all its writes succeeded. Blocking storage deletes what the site
  // stored at once, keeping its settings, and measures it again.
  void ApplyChoice(size_t comboIndex, SiteChoice choice, const std::vector<size_t>& selectedRows);
  // Asks the user for a site and its choice and adds it with that choice.
  struct AddOutcome {
    bool confirmed;
    std::optional<size_t> row;  // the new or changed row, when the site could be added
  };
  AddOutcome AddFromUser(SMUserPrompts& prompts);
  std::optional<size_t> AddSite(const std::string& site, SiteChoice choice);
  // Removes the selected rows' sites with their settings and data. Rows whose site is not
  // listed as known sites or could not be removed stay; their new positions are returned (they
  // remain selected).
  std::vector<size_t> RemoveRows(std::vector<size_t> selectedRows);

 private:
  struct Row {
    std::string name;
    std::string sortKey;
    size_t listIndex;  // position in the known sites: equal keys keep the newest first
    std::vector<std::optional<SiteChoice>> choices;  // per combo, once read
    std::optional<uint64_t> storedBytes;             // once measured
  };

  Row MakeRow(const std::string& name, size_t listIndex) const;
  size_t InsertSorted(Row row);
  SiteChoice ChoiceOf(Row& row, size_t comboIndex);
  // Visits every row that bears the name of this row (itself included).
  template <typename Visit>
  void ForEachRowNamed(size_t rowIndex, Visit visit);
  uint64_t StoredBytesOf(Row& row);
  // Site names that must not be written or removed through the list.
  bool IsEditable(const std::string& site) const;

  const SiteListDesign& design_;
  SMSettingsManager& settings_;
  SMStringTable& strings_;
  SiteSortKey sortKey_;
  std::vector<Row> rows_;
  size_t nextListIndex_ = 0;
};
