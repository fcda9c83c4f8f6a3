// Which way a recorded signal goes through the border of its scope.
#pragma once

namespace tesk {

enum class ESignalDirection {
    Unknown,  ///< the file does not tell, or the signal is none of the border
    In,
    Out,
    InOut
};

/// May be implemented by a reader beside its interface, if files of the format tell directions.
class IDirectionSource {
public:
    /// @param handle  as of the reader
    virtual ESignalDirection GetDirection(int handle) = 0;

protected:
    ~IDirectionSource() = default;
};

}  // namespace tesk
