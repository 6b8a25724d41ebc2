#include "RkUtilities/platform/files/CopyTree.h"

#include "RkUtilities/platform/files/CopyItem.h"
#include "RkUtilities/platform/files/FolderChain.h"

#include <optional>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {
namespace {

using Use = FolderChain::Use;

enum class FolderState { New, Merged };

Taken TakenFor(Decision decision) { return decision == Decision::Replace ? Taken::IsReplaced : Taken::Stays; }

class TreeCopier {
public:
    TreeCopier(const CopyRules& rules, mode_t permissionsInNewFolders)
        : m_rules(rules), m_permissions(rules.makeWritable ? S_IWUSR : 0),
          m_permissionsInNewFolders(permissionsInNewFolders) {}

    std::error_code CopyOne(Place from, Place to, Taken taken) {
        FileKind kind{};
        if (const auto error = FirstFailure([&] { return KindAt(from, kind); }, [&] { return MakeWorkFolder(to); }))
            return error;
        const Place item = m_work->Item();
        if (kind != FileKind::Folder)
            return FirstFailure([&] { return CopyItem(from, item, kind, m_permissions); },
                                [&] { return PutInPlace(item, to, taken); });
        if (const auto error = FirstFailure([&] { return m_from.Start(from, Links::DoNotFollow, Use::List); },
                                            [&] { return Outcome(mkdirat(item.folder, item.name, S_IRWXU)); },
                                            [&] { return m_to.Start(item, Links::DoNotFollow, Use::List); },
                                            [&] { return Begin(FolderState::New, nullptr); }))
            return error;
        const std::error_code incomplete = CopyAll();
        if (taken == Taken::IsReplaced && unlinkat(to.folder, to.name, 0) != 0)
            return LastError();
        return FirstFailure([&] { return PutInPlace(item, to, Taken::Stays); }, [&] { return incomplete; });
    }

    std::error_code CopyContents(const std::string& from, const std::string& to) {
        if (const auto error = FirstFailure([&] { return m_from.Start(PlaceOf(from), Links::Follow, Use::List); },
                                            [&] { return m_to.Start(PlaceOf(to), Links::Follow, Use::PassThrough); },
                                            [&] { return NoteMade(m_to.Current()); }))
            return error;
        const std::optional<FileIdentity> source = IdentityOf(m_from.Current());
        if (!source || m_made.contains(*source))
            return source ? std::error_code() : LastError();
        return FirstFailure([&] { return Begin(FolderState::Merged, nullptr); }, [&] { return CopyAll(); });
    }

private:
    struct Level {
        FolderState state;
        const char* name;  // in the level above, whose list holds it
        struct stat source;
        std::vector<FolderEntry> entries;
        std::size_t next;  // of the entries
    };

    /// Takes up the folders in which both chains stand.
    std::error_code Begin(FolderState state, const char* name) {
        Level& level = m_levels.emplace_back(Level{state, name, {}, {}, 0});
        if (fstat(m_from.Current(), &level.source) != 0)
            return LastError();
        const auto noteNew = [&] { return state == FolderState::New ? NoteMade(m_to.Current()) : std::error_code(); };
        return FirstFailure(noteNew, [&] { return ReadFolder(m_from.Current(), level.entries); });
    }

    std::error_code NoteMade(int folder) {
        const std::optional<FileIdentity> identity = IdentityOf(folder);
        if (!identity)
            return LastError();
        m_made.insert(*identity);
        return {};
    }

    /// Keeps the first failure of an entry for the end; only a folder that cannot be left ends the copying.
    std::error_code CopyAll() {
        while (!m_levels.empty()) {
            Level& level = m_levels.back();
            if (level.next < level.entries.size())
                Note(CopyEntry(level.entries[level.next++]));
            else if (const std::error_code lost = Finish())
                return lost;
        }
        return m_firstFailure;
    }

    void Note(const std::error_code& error) {
        if (error && !m_firstFailure)
            m_firstFailure = error;
    }

    std::error_code Finish() {
        const FolderState state = m_levels.back().state;
        const char* const name = m_levels.back().name;
        if (state == FolderState::New)
            SetPermissionsAndTimes(m_to.Current(), m_levels.back().source, 0);
        else
            m_work.reset();
        m_levels.pop_back();
        if (m_levels.empty())
            return {};
        const auto error = FirstFailure([&] { return m_from.Leave(); }, [&] { return m_to.Leave(); });
        if (!error && state == FolderState::New && !IsNew())
            Note(PutWorkInPlace(name, Taken::Stays));
        return error;
    }

    std::error_code MakeWorkFolder(Place target) {
        if (m_work)
            return {};
        const auto error = FirstFailure([&] { return m_work.emplace().Make(target); },
                                        [&] { return NoteMade(m_work->Item().folder); });
        if (error)
            m_work.reset();
        return error;
    }

    std::error_code PutWorkInPlace(const char* name, Taken taken) {
        const std::error_code error = PutInPlace(m_work->Item(), {m_to.Current(), name}, taken);
        if (error)
            m_work.reset();
        return error;
    }

    std::error_code CopyEntry(FolderEntry& entry) {
        const char* const name = entry.name.c_str();
        const Place source{m_from.Current(), name}, target{m_to.Current(), name};
        if (entry.kind == FileKind::Unknown) {
            if (const std::error_code error = KindAt(source, entry.kind))
                return error;
        }
        if (entry.kind == FileKind::Folder)
            return CopySubfolder(name);
        if (IsNew())
            return CopyItem(source, target, entry.kind, m_permissionsInNewFolders);
        Decision decision{};
        const std::error_code error = Decide(target, m_rules, decision);
        if (error || decision == Decision::Stay)
            return error;
        if (decision == Decision::Folder || decision == Decision::ReadOnlyFolder)
            return ErrorOf(EEXIST);
        return FirstFailure([&] { return MakeWorkFolder(target); },
                            [&] { return CopyItem(source, m_work->Item(), entry.kind, m_permissions); },
                            [&] { return PutWorkInPlace(name, TakenFor(decision)); });
    }

    std::error_code CopySubfolder(const char* name) {
        if (const std::error_code error = m_from.Enter(name, Links::DoNotFollow, Use::List))
            return error;
        std::optional<FolderState> state;
        if (const std::error_code error = EnterTarget(name, state); error || !state) {
            const std::error_code lost = m_from.Leave();
            return error ? error : lost;
        }
        return Begin(*state, name);
    }

    /// Goes into the folder's counterpart and tells whether it is new; no state when the folder is left out.
    std::error_code EnterTarget(const char* name, std::optional<FolderState>& state) {
        const std::optional<FileIdentity> source = IdentityOf(m_from.Current());
        if (!source || m_made.contains(*source))
            return source ? std::error_code() : LastError();
        const Place target{m_to.Current(), name};
        if (IsNew()) {
            state = FolderState::New;
            return FirstFailure([&] { return Outcome(mkdirat(target.folder, name, S_IRWXU)); },
                                [&] { return m_to.Enter(name, Links::DoNotFollow, Use::List); });
        }
        Decision decision{};
        std::error_code error = Decide(target, m_rules, decision);
        if (error || decision == Decision::Stay)
            return error;
        if (decision == Decision::Folder || decision == Decision::ReadOnlyFolder) {
            state = FolderState::Merged;
            m_work.reset();
            return m_to.Enter(name, Links::Follow, Use::PassThrough);
        }
        state = FolderState::New;
        error =
            FirstFailure([&] { return MakeWorkFolder(target); },
                         [&] { return Outcome(decision == Decision::Replace ? unlinkat(target.folder, name, 0) : 0); },
                         [&] { return Outcome(mkdirat(m_work->Item().folder, m_work->Item().name, S_IRWXU)); },
                         [&] { return m_to.EnterElsewhere(m_work->Item()); });
        if (error)
            m_work.reset();
        return error;
    }

    bool IsNew() const { return m_levels.back().state == FolderState::New; }

    CopyRules m_rules;
    mode_t m_permissions;
    mode_t m_permissionsInNewFolders;
    FolderChain m_from;
    FolderChain m_to;
    /// Stands in the deepest folder that others see, from its first entry on, so that entries appear complete.
    std::optional<WorkFolder> m_work;
    std::error_code m_firstFailure;
    std::vector<Level> m_levels;
    std::set<FileIdentity> m_made;  // the destination and its new folders: copying from them would never end
};

}  // namespace

std::error_code CopyTree(const std::string& from, const std::string& to, const CopyRules& rules, CopyOutcome& outcome) {
    const std::string source = WithoutClosingSlashes(from);
    const std::string target = WithoutClosingSlashes(to);
    return CopyTree(PlaceOf(source), PlaceOf(target), rules, outcome);
}

std::error_code CopyTree(Place from, Place to, const CopyRules& rules, CopyOutcome& outcome) {
    const FileSizeSignalGuard guard;
    Decision decision{};
    std::error_code error = Decide(to, rules, decision);
    const bool stays = decision == Decision::Stay || decision == Decision::ReadOnlyFolder;
    outcome = stays ? CopyOutcome::Stayed : CopyOutcome::Copied;
    if (error || stays)
        return error;
    return decision == Decision::Folder ? ErrorOf(EEXIST) : TreeCopier(rules, 0).CopyOne(from, to, TakenFor(decision));
}

std::error_code CopyContents(const std::string& from, const std::string& to, const CopyRules& rules) {
    const FileSizeSignalGuard guard;
    const bool makeWritableInside = rules.makeWritable && rules.replaceReadOnly;
    return TreeCopier(rules, makeWritableInside ? S_IWUSR : 0).CopyContents(from, to);
}

}  // namespace rk::platform
