#pragma once

#include <QString>

#include <stdexcept>

namespace lmx {

/// Root of every failure that the library reports. The message is a fixed English text, made for the eyes of a user.
class Exception : public std::runtime_error {
public:
    explicit Exception(const QString& message) : std::runtime_error(message.toStdString()), FMessage(message) {}

    const QString& Message() const noexcept { return FMessage; }

private:
    QString FMessage;
};

/// An argument that an operation cannot take.
class EArgumentException : public Exception {
public:
    using Exception::Exception;
};

/// A required argument that is null. The message is the argument's name.
class EArgumentNilException : public EArgumentException {
public:
    using EArgumentException::EArgumentException;
};

/// A required argument that is null. Names the routine and the argument.
class EExArgumentNilException : public EArgumentException {
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
class EInvalidOperation : public Exception {
public:
    using Exception::Exception;
};

/// An operation that is declared and has no implementation.
class ENotImplemented : public Exception {
public:
    using Exception::Exception;
};

/// An operation that this kind of object does not offer.
class ENotSupportedException : public Exception {
public:
    using Exception::Exception;
};

/// A text that does not convert to the wanted value.
class EConvertError : public Exception {
public:
    using Exception::Exception;
};

/// A key that is in a list already, or an absent one.
class EListError : public Exception {
public:
    using Exception::Exception;
};

/// A floating-point result that is no usable number (0/0, or out of the range of an index).
class EInvalidOp : public Exception {
public:
    using Exception::Exception;
};

/// A division by zero whose result would be used as a number.
class EZeroDivide : public Exception {
public:
    using Exception::Exception;
};

/// An assertion that does not hold; raised in release builds too.
class EAssertionFailed : public Exception {
public:
    using Exception::Exception;
};

/// A file that cannot be opened, read or written. The message begins with the file's name.
class EFileException : public Exception {
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
class EFileFormatException : public EFileException {
public:
    using EFileException::EFileException;
};

} // namespace lmx
