#pragma once

namespace korvanet::platform::assets {

class KRVTSchemaDefinition;

/** Whether the target takes the greater "SchemaVersion" in any case or only with a change. */
enum class VersionPolicy { kAlways, kWithChange };

struct MergeResult {
    /** False: the two conflict, and the target has what was merged before the conflict. */
    bool merged = false;
    /** A property of the target was added or changed. */
    bool changed = false;
    /** Stored records of the target's assets no longer match it: their properties lie otherwise. */
    bool layoutChanged = false;
};

/**
 * Brings `source`, a schema as it was read, over `target`, another copy of the same id.
 *
 * The target gains what it lacks, and new defaults where it still has those of the base. Kind and
 * flags of its own properties never change; where they differ the merge fails. Defaults of its own
 * change when the source has the greater version. In URIs the source takes over resource paths of
 * the target. A property of the target that the source lacks makes the source inconsistent.
 *
 * Schemas of different ids are refused with the warning "Cannot merge two asset schemas which have
 * different IDs.".
 */
MergeResult MergeInto(KRVTSchemaDefinition& source, KRVTSchemaDefinition* target,
                      VersionPolicy policy = VersionPolicy::kAlways);

/** Whether MergeInto would succeed and leave nothing inconsistent. Changes neither of the two. */
bool MergesClean(const KRVTSchemaDefinition& source, const KRVTSchemaDefinition& target);

}  // namespace korvanet::platform::assets
