#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace VantrelSDK {

/// A file that grows by whole chunks, each of which is on disk before the next begins: Commit hands
/// one to a thread of its own, which writes and syncs it, and Join waits for that. What a crash
/// leaves is what was committed, and of the chunk that was being written a part.
///
/// A chunk that can't be written, on a full disk say, is kept and tried again with the next one.
class StrokeJournal {
  public:
    StrokeJournal() = default;
    ~StrokeJournal();
    StrokeJournal(const StrokeJournal&) = delete;
    StrokeJournal& operator=(const StrokeJournal&) = delete;

    /// Makes a new file that begins with `header`, on disk when this returns; one that was there is
    /// replaced. False with the reason.
    bool Open(const std::string& path, std::string_view header, std::string& error);
    /// Waits for what was committed and closes the file. False with the reason when something of it
    /// could not be written.
    bool Close(std::string& error);
    bool IsOpen() const { return file_ >= 0; }

    /// The chunk that is being put together; whoever writes the journal appends to it.
    std::string& chunk() { return chunk_; }
    /// Hands the chunk on, and begins another. Waits for the one before.
    void Commit();
    /// Waits until everything that was committed is on disk, or has failed.
    void Join();
    /// Why the last chunk could not be written; empty when it could.
    std::string Problem();
    const std::string& path() const { return path_; }

  private:
    void Run();
    bool WriteOut(std::string& error);

    std::string path_, chunk_;
    int file_ = -1;
    /// How much of the file is good; what was written behind it is written again.
    long long good_ = 0;

    std::thread thread_;
    std::mutex mutex_;
    std::condition_variable changed_;
    /// The thread has it while there is work, else the owner.
    std::string pending_;
    bool work_ = false, stop_ = false;
    std::string problem_;
};

/// Cuts what a crash left of a journal back to its last whole operation outside a stroke: the text
/// up to there. Nothing is cut from a journal that was closed.
std::string_view WholeStrokes(std::string_view journal);

}  // namespace VantrelSDK
