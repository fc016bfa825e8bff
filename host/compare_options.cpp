#include "compare_options.h"

#include "option_names.h"

namespace
{
constexpr char kTargets[] = "Targets";
constexpr char kScan[] = "Scan";
constexpr char kQuery[] = "Query";
constexpr char kCompare[] = "Compare";
constexpr char kRun[] = "Run and report";
constexpr char kLegacy[] = "Legacy hand-over";
constexpr char kAddresses[] = "ADDRESS[,...]";
constexpr char kIds[] = "ID[,...]";

using Form = OptionForm;
} // namespace

const std::vector<OptionDescription>& compareOptions()
{
    static const std::vector<OptionDescription> options = {
        {option::kBmc, Form::List, kTargets, kAddresses,
         "Management controllers of servers, each [https://|http://][user[:password]@]host[:port], IPv6 in brackets; "
         "10.0.0.[1-32,40] names several, @FILE and - (standard input) list one a line."},
        {option::kPmx, Form::List, kTargets, kAddresses,
         "Management controllers of the PMX kind, written as for --bmc."},
        {option::kEsxi, Form::List, kTargets, kAddresses, "ESXi hosts, written as for --bmc."},
        {option::kCmm, Form::List, kTargets, kAddresses, "Chassis management modules, written as for --bmc."},
        {option::kSmm, Form::List, kTargets, kAddresses, "System management modules, written as for --bmc."},
        {option::kConfig, Form::Value, kTargets, "FILE",
         "A JSON file that lists further targets with their users and passwords."},
        {option::kExclude, Form::List, kTargets, kAddresses,
         "Targets to leave out, written as for --bmc; without a port every port of the host."},
        {option::kBmcUsername, Form::Value, kTargets, "USER",
         "The user for targets that name none; without it KORVAN_USERNAME of the environment, then a question."},
        {option::kBmcPassword, Form::Value, kTargets, "PASSWORD",
         "The password for targets that name none; shells keep it in their history, --password-file does not."},
        {option::kPasswordFile, Form::Value, kTargets, "FILE",
         "Takes the password for targets that name none from the file's first line."},
        {option::kPasswordStdin, Form::Flag, kTargets, "",
         "Takes the password for targets that name none from the first line of standard input."},
        {option::kNoInput, Form::Flag, kTargets, "",
         "Never asks; without it a user or password that is still missing is asked for once, on a terminal."},
        {option::kAllowOpenFiles, Form::Flag, kTargets, "",
         "Takes files with passwords also when other users can read them."},
        {option::kBmcCimPort, Form::Number, kTargets, "PORT",
         "The port of the controllers' CIM service; without it 5989 for https and 5988 for http targets.", 1, 65535},
        {option::kIpmiPort, Form::Number, kTargets, "PORT",
         "The port of the controllers' IPMI service; 623 without it.", 1, 65535},
        {option::kIpmiCipherSuite, Form::Number, kTargets, "NUMBER",
         "The only cipher suite to use over IPMI, 0 to 17; without it 3, and 17 where 3 is refused.", 0, 17},
        {option::kNeverCheckTrust, Form::Flag, kTargets, "",
         "Accepts any certificate; without it an untrusted one fails the target."},
        {option::kCaCert, Form::Value, kTargets, "FILE",
         "A PEM file of the certificates to trust instead of the system's."},
        {option::kKnownControllers, Form::Value, kTargets, "FILE",
         "The file of controllers trusted by the fingerprint of their certificate; without it "
         "~/.korvan/known_controllers."},
        {option::kTrustOnFirstUse, Form::Flag, kTargets, "",
         "Trusts a controller that is not known yet and adds its fingerprint to that file; a changed one is refused."},

        {option::kNoScan, Form::Flag, kScan, "",
         "Scans nothing; --mt, --ostype and --osarch then say what to query for."},
        {option::kScanXml, Form::Value, kScan, "FILE",
         "Takes the inventory from an earlier scan's report instead of scanning."},
        {option::kType, Form::Value, kScan, "TYPE[,...]",
         "Kinds of updates to look at: fw (firmware), dd (drivers), sw (software), mm, or all."},
        {option::kCheckDevice, Form::Flag, kScan, "",
         "Refuses devices whose inventory says that they cannot be updated; the log of the scan names them."},
        {option::kIoBay, Form::Number, kScan, "NUMBER",
         "Scans only what sits in this I/O bay of a chassis (--cmm, --smm); 0, and without it, everything.", 0, 999},

        {option::kDir, Form::Value, kQuery, "DIR",
         "The repository: the folder that holds the update packages; without it the working directory."},
        {option::kMt, Form::Value, kQuery, "TYPE", "The machine type to query for when there is no scan."},
        {option::kOsType, Form::Value, kQuery, "OS",
         "The operating system to query for; 'korvan list os' shows the names."},
        {option::kOsArch, Form::Value, kQuery, "ARCH",
         "The architecture to query for; 'korvan list arch' shows the names."},
        {option::kScope, Form::Value, kQuery, "SCOPE",
         "Which packages: latest, velpak (an update pack) or individual."},
        {option::kIncludeId, Form::Value, kQuery, kIds, "Update ids to take; individual asks for them."},
        {option::kExcludeId, Form::Value, kQuery, kIds, "Update ids to leave out."},
        {option::kForceId, Form::Value, kQuery, kIds, "Update ids to select whatever is installed, or all."},
        {option::kNoReq, Form::Flag, kQuery, "", "Leaves out the packages that others require."},
        {option::kIgnoreMtOsCheck, Form::Flag, kQuery, "",
         "Takes packages without checking that they are for the machine type and system."},
        {option::kQueryXml, Form::Value, kQuery, "FILE",
         "Takes the packages from an earlier query's report instead of querying."},
        {option::kBackup, Form::Flag, kQuery, "",
         "Looks at the backup bank of the firmware instead of the primary one."},

        {option::kPsu, Form::Value, kCompare, "SLOT[,...]",
         "Power supplies to compare, by slot, or all; without it all."},
        {option::kNoSupersede, Form::Flag, kCompare, "", "Keeps packages that a newer one supersedes."},
        {option::kAllDriver, Form::Flag, kCompare, "", "Selects drivers also for devices that were not detected."},

        {option::kPattern, Form::Value, kRun, "REGEX",
         "Prints one table over all targets with the rows that match (a regular expression, letter case ignored), and "
         "writes it as JSON."},
        {option::kOutput, Form::Value, kRun, "DIR",
         "The folder for reports and log; without it a new one, logs/Korvan-<date>-<time>."},
        {option::kResume, Form::Flag, kRun, "",
         "Runs only the targets that --output holds no SUCCESS folder of; the report covers all."},
        {option::kLog, Form::Number, kRun, "LEVEL",
         "How much the log holds: 1 errors, 2 warnings, 3 information (the default), 4 everything.", 1, 4},
        {option::kVerbose, Form::Flag, kRun, "", "Adds to the tables the columns that explain each decision."},
        {option::kParallel, Form::Number, kRun, "COUNT", "Targets worked on at once, 1 to 256; 16 without it.", 1, 256},
        {option::kConnectTimeout, Form::Number, kRun, "SECONDS",
         "Seconds until a connection must stand, 1 to 3600; 20 without it.", 1, 3600},
        {option::kRequestTimeout, Form::Number, kRun, "SECONDS",
         "Seconds that one answer of a controller may take, 1 to 3600; 120 without it.", 1, 3600},
        {option::kTargetTimeout, Form::Number, kRun, "SECONDS",
         "Seconds that one target may take in all, 1 to 86400; 900 without it.", 1, 86400},

        {option::kTarn, Form::Flag, kLegacy, "",
         "Treats no target as a legacy system: none is asked whether it is one, refused or handed over."},
        {option::kXml, Form::Flag, kLegacy, "", "Asks the legacy installer tool for XML output."},
    };
    return options;
}
