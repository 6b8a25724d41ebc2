#include "RkUtilities/platform/files/CopyTree.h"

#include "RkUtilities/platform/files/CopyItem.h"
#include "RkUtilities/platform/files/FolderChain.h"

#include <fcntl.h>
#include <optional>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {
namespace {

using Use = FolderChain::Use;

enum class FolderState { New, Merged };

Taken TakenFor(Decision decision)
{
    return decision == Decision::Replace ? Taken::IsReplaced : Taken::Stays;
}

class TreeCopier {
public:
    TreeCopier(const CopyRules& rules, mode_t permissionsInNewFolders)
        : m_rules(rules), m_permissions(rules.makeWritable ? S_IWUSR : 0),
          m_permissionsInNewFolders(permissionsInNewFolders)
    {}

    /// The whole tree appears at once, with what could be copied of it.
    std::error_code CopyFolder(Place from, Place to, Taken taken)
    {
        WorkFolder work;
        FileIdentity workIdentity;
        std::error_code error = m_from.Start(from, Links::DoNotFollow, Use::List);
        if (!error)
            error = work.Make(to);
        if (!error)
            error = IdentityOf(work.Item().folder, workIdentity);
        if (!error)
            error = Outcome(mkdirat(work.Item().folder, work.Item().name, S_IRWXU));
        if (!error)
            error = m_to.Start(work.Item(), Links::DoNotFollow, Use::List);
        if (!error)
            error = Begin(FolderState::New);
        if (error)
            return error;
        m_made.insert(workIdentity);
        m_isSeen = false;
        const std::error_code incomplete = CopyAll();
        if (taken == Taken::IsReplaced && unlinkat(to.folder, to.name, 0) != 0)
            return LastError();
        error = PutInPlace(work.Item(), to, Taken::Stays);
        return error ? error : incomplete;
    }

    std::error_code CopyContents(const std::string& from, const std::string& to)
    {
        FileIdentity source;
        FileIdentity target;
        std::error_code error = m_from.Start({AT_FDCWD, SystemPath(from)}, Links::Follow, Use::List);
        if (!error)
            error = m_to.Start({AT_FDCWD, SystemPath(to)}, Links::Follow, Use::PassThrough);
        if (!error)
            error = IdentityOf(m_from.Current(), source);
        if (!error)
            error = IdentityOf(m_to.Current(), target);
        if (error || source == target)
            return error;
        m_made.insert(target);
        error = Begin(FolderState::Merged);
        return error ? error : CopyAll();
    }

private:
    struct Level {
        FolderState state;
        struct stat source;
        EntryList entries;
    };

    /// Takes up the folders in which both chains stand.
    std::error_code Begin(FolderState state)
    {
        Level& level = m_levels.emplace_back(Level{state, {}, {}});
        if (fstat(m_from.Current(), &level.source) != 0)
            return LastError();
        if (state == FolderState::New) {
            FileIdentity made;
            if (const std::error_code error = IdentityOf(m_to.Current(), made))
                return error;
            m_made.insert(made);
        }
        return level.entries.Read(m_from.Current());
    }

    /// The first failure of an entry is kept for the end; only losing the way ends the copying.
    std::error_code CopyAll()
    {
        std::error_code first;
        while (!m_levels.empty()) {
            const EntryList::Entry entry = m_levels.back().entries.Next();
            if (entry.name == nullptr) {
                if (const std::error_code lost = Finish())
                    return lost;
            } else if (const std::error_code error = CopyEntry(entry); error && !first) {
                first = error;
            }
        }
        return first;
    }

    std::error_code Finish()
    {
        if (IsNew())
            SetPermissionsAndTimes(m_to.Current(), m_levels.back().source, 0);
        m_levels.pop_back();
        if (m_levels.empty())
            return {};
        const std::error_code error = m_from.Leave();
        return error ? error : m_to.Leave();
    }

    std::error_code CopyEntry(EntryList::Entry entry)
    {
        const Place source{m_from.Current(), entry.name};
        const Place target{m_to.Current(), entry.name};
        std::error_code error;
        if (entry.kind == FileKind::Unknown)
            error = KindAt(source, entry.kind);
        if (error)
            return error;
        if (entry.kind == FileKind::Folder)
            return CopySubfolder(entry.name);
        Decision decision = Decision::Free;
        if (!IsNew())
            error = Decide(target, m_rules, decision);
        if (error || decision == Decision::Stay)
            return error;
        if (decision == Decision::Folder || decision == Decision::ReadOnlyFolder)
            return ErrorOf(EEXIST);
        const mode_t permissions = IsNew() ? m_permissionsInNewFolders : m_permissions;
        return CopyItem(source, target, {entry.kind, TakenFor(decision), permissions, m_isSeen});
    }

    std::error_code CopySubfolder(const char* name)
    {
        if (const std::error_code error = m_from.Enter(name, Links::DoNotFollow, Use::List))
            return error;
        std::optional<FolderState> state;
        if (const std::error_code error = EnterTarget(name, state); error || !state) {
            const std::error_code lost = m_from.Leave();
            return error ? error : lost;
        }
        return Begin(*state);
    }

    /// Goes into the folder's counterpart and tells whether it is new; no state when the folder is left out.
    std::error_code EnterTarget(const char* name, std::optional<FolderState>& state)
    {
        FileIdentity source;
        if (const std::error_code error = IdentityOf(m_from.Current(), source))
            return error;
        if (m_made.contains(source))
            return {};
        std::error_code error = Outcome(mkdirat(m_to.Current(), name, S_IRWXU));
        if (error == std::errc::file_exists && !IsNew())
            return EnterTaken(name, state);
        return error ? error : EnterNew(name, state);
    }

    std::error_code EnterNew(const char* name, std::optional<FolderState>& state)
    {
        state = FolderState::New;
        return m_to.Enter(name, Links::DoNotFollow, Use::List);
    }

    std::error_code EnterTaken(const char* name, std::optional<FolderState>& state)
    {
        Decision decision{};
        std::error_code error = Decide({m_to.Current(), name}, m_rules, decision);
        if (error || decision == Decision::Stay)
            return error;
        if (decision != Decision::Replace) {
            state = FolderState::Merged;
            return m_to.Enter(name, Links::Follow, Use::PassThrough);
        }
        if (unlinkat(m_to.Current(), name, 0) != 0 || mkdirat(m_to.Current(), name, S_IRWXU) != 0)
            return LastError();
        return EnterNew(name, state);
    }

    bool IsNew() const { return m_levels.back().state == FolderState::New; }

    CopyRules m_rules;
    mode_t m_permissions;
    mode_t m_permissionsInNewFolders;
    bool m_isSeen = true;
    FolderChain m_from;
    FolderChain m_to;
    std::vector<Level> m_levels;
    std::set<FileIdentity>
        m_made;  // the destination and its new folders: never copied from, or the copying would not end
};

}  // namespace

std::error_code CopyTree(const std::string& from, const std::string& to, const CopyRules& rules, CopyOutcome& outcome)
{
    const std::string source = WithoutClosingSlashes(from);
    const std::string target = WithoutClosingSlashes(to);
    return CopyTree({AT_FDCWD, SystemPath(source)}, {AT_FDCWD, SystemPath(target)}, rules, outcome);
}

std::error_code CopyTree(Place from, Place to, const CopyRules& rules, CopyOutcome& outcome)
{
    const FileSizeSignalGuard guard;
    Decision decision{};
    std::error_code error = Decide(to, rules, decision);
    const bool stays = decision == Decision::Stay || decision == Decision::ReadOnlyFolder;
    outcome = stays ? CopyOutcome::Stayed : CopyOutcome::Copied;
    if (error || stays)
        return error;
    if (decision == Decision::Folder)
        return ErrorOf(EEXIST);
    FileKind kind{};
    error = KindAt(from, kind);
    if (error)
        return error;
    if (kind == FileKind::Folder)
        return TreeCopier(rules, 0).CopyFolder(from, to, TakenFor(decision));
    const mode_t permissions = rules.makeWritable ? S_IWUSR : 0;
    return CopyItem(from, to, {kind, TakenFor(decision), permissions});
}

std::error_code CopyContents(const std::string& from, const std::string& to, const CopyRules& rules)
{
    const FileSizeSignalGuard guard;
    const bool makeWritableInside = rules.makeWritable && rules.replaceReadOnly;
    return TreeCopier(rules, makeWritableInside ? S_IWUSR : 0).CopyContents(from, to);
}

}  // namespace rk::platform
