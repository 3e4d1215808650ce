#include <algorithm>

#include "core/anim/LControlCollection.h"
#include "core/io/BlindRecord.h"

namespace VantrelSDK {

int LMorphKey::WriteTo(LBlindData* stream) const {
    return RecordWriter(stream, 576)
        .Field(577, id)
        .Field(578, time)
        .Field(579, weightIn)
        .Field(580, weightOut)
        .End();
}

int LMorphKey::ReadFrom(LBlindData* stream) {
    return ReadRecord(stream, 576, [&](unsigned short tag) {
        if (tag == 577) return stream->Read(id);
        if (tag == 578) return stream->Read(time);
        if (tag == 579) return stream->Read(weightIn);
        return tag == 580 ? stream->Read(weightOut) : 0;
    });
}

int LMorphControl2::WriteTo(LBlindData* stream) const {
    RecordWriter record(stream, 592);
    record.Field(593, active_).Field(594, enabled_).Field(598, jointsOn_).Field(595, type_);
    if (!cname_.empty()) record.Text(596, cname_);
    for (const LMorphKey& key : keys_) record.Record(597, key);
    return record.End();
}

int LMorphControl2::ReadFrom(LBlindData* stream) {
    const int code = ReadRecord(stream, 592, [&](unsigned short tag) {
        switch (tag) {
            case 593:
                return ReadBool(stream, active_);
            case 594:
                return ReadBool(stream, enabled_);
            case 598:
                return ReadBool(stream, jointsOn_);
            case 595:
                return stream->Read(type_);
            case 596:
                return ReadText(stream, cname_);
            case 597:
                return ReadKey(stream);
            default:
                return 0;
        }
    });
    SortRead();
    return code;
}

int LMorphControl2::ReadOldFrom(LBlindData* stream) {
    const int code = ReadRecord(stream, 592, [&](unsigned short tag) {
        if (tag == 593) return ReadBool(stream, active_);
        if (tag == 594) return ReadBool(stream, enabled_);
        return tag == 595 ? ReadKey(stream) : 0;
    });
    SortRead();
    return code;
}

int LMorphControl2::ReadKey(LBlindData* stream) {
    return keys_.emplace_back().ReadFrom(stream);
}

/// Keys lie in a block in their order; one from elsewhere may hold them in any.
void LMorphControl2::SortRead() {
    Invalidate();
    std::ranges::stable_sort(keys_, {}, &LMorphKey::time);
}

int LControlCollection::WriteTo(LBlindData* stream) const {
    RecordWriter record(stream, 624);
    for (const auto& track : submorphs_) record.Record(625, *track);
    return record.End();
}

int LControlCollection::ReadFrom(LBlindData* stream) {
    RemoveAll();
    return ReadRecord(stream, 624, [&](unsigned short tag) {
        return tag == 625 ? NewTrack(LMorphControl2::kUndefined).ReadFrom(stream) : 0;
    });
}

LMorphControl2& LControlCollection::NewTrack(int type) {
    LMorphControl2& track = *GetMorphCtrl(AddMorphCtrl(createNewControl()));
    track.SetType(type);
    return track;
}

int LControlCollection::ImportTracks(LBlindData* stream, int type) {
    return ReadRecord(stream, 624, [&](unsigned short tag) {
        if (tag != 625 && tag != 626) return 0;
        LMorphControl2& track = NewTrack(type);
        track.InitName();
        if (tag == 625) return track.ReadOldFrom(stream);
        return ReadRecord(stream, 656, [&](unsigned short part) {
            if (part == 657) return track.ReadOldFrom(stream);
            if (part != 658) return 0;
            std::string name;
            const int code = ReadText(stream, name);
            if (!name.empty()) track.SetName(name);
            return code;
        });
    });
}

void LControlCollection::LowerTargets() {
    for (const auto& track : submorphs_)
        if (track->GetType() == LMorphControl2::kPhoneme) track->LowerTargets();
}

}  // namespace VantrelSDK
