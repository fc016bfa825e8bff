#pragma once

// Names of the command's options as they stand in UserContext::options: lower case, without the leading "--".
// Each name stands once, here; docs/options.md says what they mean to the user.
namespace option
{
// Where the targets are.
constexpr char kBmc[] = "bmc";
constexpr char kPmx[] = "pmx";
constexpr char kEsxi[] = "esxi";
constexpr char kCmm[] = "cmm";
constexpr char kSmm[] = "smm";
constexpr char kLocal[] = "local"; // set by the framework for an in-band target, not by the user
constexpr char kConfig[] = "config";
constexpr char kExclude[] = "exclude";
constexpr char kBmcUsername[] = "bmc-username";
constexpr char kBmcPassword[] = "bmc-password";
constexpr char kPasswordFile[] = "password-file";
constexpr char kPasswordStdin[] = "password-stdin";
constexpr char kNoInput[] = "no-input";
constexpr char kAllowOpenFiles[] = "allow-open-files";
constexpr char kBmcCimPort[] = "bmc-cim-port";
constexpr char kIpmiPort[] = "ipmi-port";
constexpr char kIpmiCipherSuite[] = "ipmi-cipher-suite";
constexpr char kNeverCheckTrust[] = "never-check-trust";
constexpr char kCaCert[] = "cacert";
constexpr char kKnownControllers[] = "known-controllers";
constexpr char kTrustOnFirstUse[] = "trust-on-first-use";
constexpr char kFingerprint[] = "fingerprint"; // set by the framework for the target at hand, not by the user
constexpr char kOldTls[] = "old-tls";          // the same
constexpr char kTarn[] = "tarn";

// Scan.
constexpr char kIoBay[] = "iobay";
constexpr char kCheckDevice[] = "checkdevice";
constexpr char kNoScan[] = "noscan";
constexpr char kScanXml[] = "scanxml";
constexpr char kType[] = "type";

// Query.
constexpr char kDir[] = "dir";
constexpr char kMt[] = "mt";
constexpr char kOsType[] = "ostype";
constexpr char kOsArch[] = "osarch";
constexpr char kScope[] = "scope";
constexpr char kIncludeId[] = "includeid";
constexpr char kExcludeId[] = "excludeid";
constexpr char kForceId[] = "forceid";
constexpr char kNoReq[] = "noreq";
constexpr char kIgnoreMtOsCheck[] = "ignoremtoscheck";
constexpr char kQueryXml[] = "queryxml";
constexpr char kBackup[] = "backup";

// Compare.
constexpr char kPsu[] = "psu";
constexpr char kNoSupersede[] = "nosupersede";
constexpr char kAllDriver[] = "alldriver";

// Run and report.
constexpr char kPattern[] = "pattern";
constexpr char kOutput[] = "output";
constexpr char kLog[] = "log";
constexpr char kVerbose[] = "verbose";
constexpr char kXml[] = "xml"; // only the legacy installer tool reads it
constexpr char kResume[] = "resume";
constexpr char kParallel[] = "parallel";
constexpr char kConnectTimeout[] = "connect-timeout";
constexpr char kRequestTimeout[] = "request-timeout";
constexpr char kTargetTimeout[] = "target-timeout";
} // namespace option
