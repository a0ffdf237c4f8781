#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <stdexcept>

namespace lmx {

/// Root of every failure that the library reports. The message is a fixed English text, made for the eyes of a user.
class LMX_EXPORT Exception : public std::runtime_error {
public:
    explicit Exception(const QString& message) : std::runtime_error(message.toStdString()), FMessage(message) {}

    const QString& Message() const noexcept { return FMessage; }

    /// Where the failure lies, such as "grid.asc, line 3". Empty unless who raised it stands in a text or a file, and
    /// for failures whose message begins with the file's name.
    const QString& Place() const noexcept { return FPlace; }
    /// For who knows the place of a failure that passes through; the first one to tell is the nearest and counts.
    void SetPlace(const QString& place) {
        if (FPlace.isEmpty())
            FPlace = place;
    }
    /// The message with its place before it: what to show a user who asked for a file.
    QString Description() const { return FPlace.isEmpty() ? FMessage : FPlace + QStringLiteral(": ") + FMessage; }

private:
    QString FMessage;
    QString FPlace;
};

/// An argument that an operation cannot take.
class LMX_EXPORT EArgumentException : public Exception {
public:
    using Exception::Exception;
};

/// A required argument that is null. The message is the argument's name.
class LMX_EXPORT EArgumentNilException : public EArgumentException {
public:
    using EArgumentException::EArgumentException;
};

/// A required argument that is null. Names the routine and the argument.
class LMX_EXPORT EExArgumentNilException : public EArgumentException {
public:
    EExArgumentNilException(const QString& routine, const QString& argument)
        : EArgumentException(routine + QStringLiteral(": argument ") + argument + QStringLiteral(" is nil")),
          FRoutine(routine),
          FArgument(argument) {}

    const QString& Routine() const noexcept { return FRoutine; }
    const QString& Argument() const noexcept { return FArgument; }

private:
    QString FRoutine;
    QString FArgument;
};

/// An operation that the object's present state does not allow.
class LMX_EXPORT EInvalidOperation : public Exception {
public:
    using Exception::Exception;
};

/// An operation that is declared and has no implementation.
class LMX_EXPORT ENotImplemented : public Exception {
public:
    using Exception::Exception;
};

/// An operation that this kind of object does not offer.
class LMX_EXPORT ENotSupportedException : public Exception {
public:
    using Exception::Exception;
};

/// A text that does not convert to the wanted value.
class LMX_EXPORT EConvertError : public Exception {
public:
    using Exception::Exception;
};

/// A key that is in a list already, or an absent one.
class LMX_EXPORT EListError : public Exception {
public:
    using Exception::Exception;
};

/// A floating-point result that is no usable number (0/0, or out of the range of an index).
class LMX_EXPORT EInvalidOp : public Exception {
public:
    using Exception::Exception;
};

/// A division by zero whose result would be used as a number.
class LMX_EXPORT EZeroDivide : public Exception {
public:
    using Exception::Exception;
};

/// An assertion that does not hold; raised in release builds too.
class LMX_EXPORT EAssertionFailed : public Exception {
public:
    using Exception::Exception;
};

/// More memory than there is, or than a size can say. The object that asked for it is as it was.
class LMX_EXPORT EOutOfMemory : public Exception {
public:
    EOutOfMemory() : Exception(QStringLiteral("Out of memory")) {}
};

/// A file that cannot be opened, read or written. The message begins with the file's name.
class LMX_EXPORT EFileException : public Exception {
public:
    EFileException(const QString& fileName, const QString& problem)
        : Exception(fileName + QStringLiteral(": ") + problem),
          FFileName(fileName),
          FProblem(problem) {}

    const QString& FileName() const noexcept { return FFileName; }
    const QString& Problem() const noexcept { return FProblem; }

private:
    QString FFileName;
    QString FProblem;
};

/// A file whose content is damaged, contradicts itself or is of another kind.
class LMX_EXPORT EFileFormatException : public EFileException {
public:
    using EFileException::EFileException;
};

} // namespace lmx
