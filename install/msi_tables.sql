-- What wixl has no words for, as rows of the Windows Installer's tables. A blank line ends a statement.

-- Another build of the same version is replaced, too. 1: features that were chosen stay chosen. 256, 512: from and to are
-- part of the range. 2: only looked for.
INSERT INTO `Upgrade` (`UpgradeCode`, `VersionMin`, `VersionMax`, `Attributes`, `ActionProperty`)
  VALUES ('{6E0DB4B5-3C0F-4B7B-9C1E-6D1B0F8C5D21}', '0.0.0', '@VERSION@', 769, 'OLDER_THERE')

INSERT INTO `Upgrade` (`UpgradeCode`, `VersionMin`, `Attributes`, `ActionProperty`)
  VALUES ('{6E0DB4B5-3C0F-4B7B-9C1E-6D1B0F8C5D21}', '@VERSION@', 2, 'NEWER_THERE')

INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('FindRelatedProducts', 25)

INSERT INTO `InstallUISequence` (`Action`, `Sequence`) VALUES ('FindRelatedProducts', 25)

INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('MigrateFeatureStates', 1200)

INSERT INTO `InstallUISequence` (`Action`, `Sequence`) VALUES ('MigrateFeatureStates', 1200)

-- These may be given by a user whom an administrator lets install.
INSERT INTO `Property` (`Property`, `Value`) VALUES ('SecureCustomProperties', 'INSTALLFOLDER;OLDER_THERE;NEWER_THERE;RECORDMANAGER_THERE;PROGRAMNAME_THERE;DATAROOT;DATAROOT_THERE;DATAROOT_NOTED;DOCUROOT;DOCUROOT_THERE;DOCUROOT_NOTED;PROGRAMROOT;PROGRAMROOT_THERE;PROGRAMROOT_NOTED')

CREATE TABLE `Condition` (`Feature_` CHAR(38) NOT NULL, `Level` SHORT NOT NULL, `Condition` CHAR(255)
  PRIMARY KEY `Feature_`, `Level`)

INSERT INTO `Condition` (`Feature_`, `Level`, `Condition`) VALUES ('RecordManager', 1, 'RECORDMANAGER_THERE')

-- Macros' hosts look for the library on the PATH, as do command prompts for the tool. *: for all users. =-: taken away
-- when the library is. [~]: what is there.
CREATE TABLE `Environment` (`Environment` CHAR(72) NOT NULL, `Name` CHAR(255) NOT NULL LOCALIZABLE,
  `Value` CHAR(255) LOCALIZABLE, `Component_` CHAR(72) NOT NULL PRIMARY KEY `Environment`)

INSERT INTO `Environment` (`Environment`, `Name`, `Value`, `Component_`)
  VALUES ('Path', '=-*PATH', '[~];[INSTALLFOLDER]', 'Library')

-- Without their versions, Windows would take these files for older ones than any.
UPDATE `File` SET `Version` = '@VERSION@.0', `Language` = '1031' WHERE `File` = 'Library'

UPDATE `File` SET `Version` = '@VERSION@.0', `Language` = '1031' WHERE `File` = 'RecordManager'

UPDATE `File` SET `Version` = '@VERSION@.0', `Language` = '1031' WHERE `File` = 'Server'

UPDATE `File` SET `Version` = '@VERSION@.0', `Language` = '1031' WHERE `File` = 'Tool'

DELETE FROM `MsiFileHash` WHERE `File_` = 'Library'

DELETE FROM `MsiFileHash` WHERE `File_` = 'RecordManager'

DELETE FROM `MsiFileHash` WHERE `File_` = 'Server'

DELETE FROM `MsiFileHash` WHERE `File_` = 'Tool'

-- The older version goes in the same transaction: if the new one fails, the old one is back.
INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('RemoveExistingProducts', 1510)

-- The server registers itself, for clients of 32 and of 64 bits: a 32-bit package cannot write for the latter. 18: a program
-- of the package; 64: whose failure does not count; 1024: when its turn comes, not before; 256: only if the installation
-- fails later; 2048: as the system.
INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`) VALUES ('RegisterServer', 3090, 'Server', '/regserver')

INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`) VALUES ('UndoRegistering', 3410, 'Server', '/unregserver')

INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`) VALUES ('UnregisterServer', 3154, 'Server', '/unregserver')

INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`) VALUES ('UndoUnregistering', 3410, 'Server', '/regserver')

INSERT INTO `InstallExecuteSequence` (`Action`, `Condition`, `Sequence`)
  VALUES ('UndoUnregistering', 'REMOVE="ALL"', 1901)

INSERT INTO `InstallExecuteSequence` (`Action`, `Condition`, `Sequence`)
  VALUES ('UnregisterServer', 'REMOVE="ALL"', 1902)

INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('RemoveEnvironmentStrings', 3300)

INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('WriteEnvironmentStrings', 5200)

INSERT INTO `InstallExecuteSequence` (`Action`, `Condition`, `Sequence`)
  VALUES ('UndoRegistering', 'NOT REMOVE="ALL"', 5801)

INSERT INTO `InstallExecuteSequence` (`Action`, `Condition`, `Sequence`)
  VALUES ('RegisterServer', 'NOT REMOVE="ALL"', 5802)
