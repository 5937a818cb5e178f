#include "engine/candidate_preparation.h"

#include <algorithm>
#include <utility>

#include "base/text_table.h"
#include "engine/classified_ahead.h"
#include "engine/matcher.h"
#include "engine/progress_pacer.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

bool opensFile(const PropRef& property)
{
    return property && !property.has(property_flag::fromFileRecord);
}

// An exact search that is ordered by what the record holds reads further values of the few files alone that are not
// alone with that.
bool readsValues(const ScanCriteria& criteria)
{
    if (opensFile(criteria.primary))
        return true;
    return !criteria.exact() && std::any_of(criteria.properties.begin(), criteria.properties.end(), opensFile);
}

// What the work is, for the person who waits.
TextId captionOf(const ScanCriteria& criteria, bool described)
{
    if (!described)
        return TextId::phaseProperties;
    switch (criteria.category()) {
    case Category::audio:
        return TextId::phaseMusic;
    case Category::video:
        return TextId::phaseFilms;
    case Category::images:
        return TextId::phasePictures;
    default:
        return TextId::phaseTexts;
    }
}

void count(const ShellItem& item, const NoDescriptorCause& cause, ScanObserver& observer, WalkStats& stats)
{
    SkippedItem told{bytesFromNative(item.fullName()), {ErrorKind::notSupported, 0, causeText(cause)}};
    if (cause.unreadable) {
        ++stats.skipped;
        observer.skipped(told);
        return;
    }
    ++stats.undescribed[cause.reason];
    stats.undescribedFailed = stats.undescribedFailed || cause.passing;
    observer.undescribed(told);
}

}  // namespace

CandidatePreparation::CandidatePreparation(const ScanCriteria& criteria, const PropertySource& properties,
                                           SimilarContent* similar)
    : criteria_(criteria),
      properties_(properties),
      similar_(isDescribed(criteria, similar) ? similar : nullptr),
      needed_(similar_ != nullptr || readsValues(criteria)),
      work_(workerCount(criteria.options.threads))
{
}

CandidatePreparation::~CandidatePreparation()
{
    stop_.cancel();
    work_.drop();
}

void CandidatePreparation::begin(Candidate& file)
{
    const std::uint64_t number = begun_++;
    work_.add([this, number, &file] { prepare(number, file); });
}

// A descriptor is made first: what reads a file for it hands over the file's values as well.
void CandidatePreparation::prepare(std::uint64_t number, Candidate& file)
{
    if (similar_ != nullptr) {
        if (auto cause = similar_->describe(criteria_, file, stop_)) {
            leaves({number, std::move(cause)});
            return;
        }
    }
    if (!isComplete(file)) {
        leaves({number, std::nullopt});
        return;
    }
    for (const PropRef& property : criteria_.properties) {
        if (stop_.cancelled())
            return;
        static_cast<void>(properties_.value(file, property));
    }
}

bool CandidatePreparation::isComplete(Candidate& file) const
{
    if (properties_.value(file, criteria_.primary).missing())
        return false;
    return similar_ == nullptr || similar_->admits(criteria_, file);
}

void CandidatePreparation::leaves(Leaver leaver)
{
    const std::lock_guard lock(mutex_);
    leavers_.push_back(std::move(leaver));
}

bool CandidatePreparation::settle(CandidateList& candidates, const Clock& clock, ScanObserver& observer,
                                  const CancelFlag& cancel, WalkStats& stats)
{
    if (!needed_)
        return true;
    observer.caption(text(captionOf(criteria_, similar_ != nullptr)));
    ProgressPacer pacer(clock, observer);
    const auto report = [&](std::uint64_t done) {
        if (pacer.due())
            pacer.report({ScanPhase::describing, done, candidates.size(), 0, 0});
    };
    if (!work_.settle(cancel, report))
        return false;
    letGo(candidates, observer, stats);
    pacer.report({ScanPhase::describing, candidates.size(), candidates.size(), 0, 0});
    return true;
}

void CandidatePreparation::letGo(CandidateList& candidates, ScanObserver& observer, WalkStats& stats)
{
    std::sort(leavers_.begin(), leavers_.end(), [](const Leaver& a, const Leaver& b) { return a.number < b.number; });
    auto leaver = leavers_.begin();
    auto to = candidates.begin();
    std::uint64_t number = 0;
    for (auto file = candidates.begin(); file != candidates.end(); ++file, ++number) {
        if (leaver == leavers_.end() || leaver->number != number) {
            if (to != file)
                *to = std::move(*file);
            ++to;
            continue;
        }
        if (leaver->cause)
            count(file->item(), *leaver->cause, observer, stats);
        else
            ++stats.withoutValue;
        ++leaver;
    }
    candidates.erase(to, candidates.end());
    leavers_.clear();
    begun_ = 0;
}

}  // namespace kelvane
