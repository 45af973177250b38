-- One of the office's directories in the registry, @VALUE@, given as @PROPERTY@. It is written when it is given and nothing
-- is there. What is written is noted: repair and upgrade know it without being told, and the end of the installation
-- takes it away, unless it has become the office's since: by another text, or by the case-management system's ProgramName.
INSERT INTO `RegLocator` (`Signature_`, `Root`, `Key`, `Name`, `Type`)
  VALUES ('@VALUE@There', 2, 'SOFTWARE\Quorvane\Stelvora\Options', '@VALUE@', 2)

INSERT INTO `AppSearch` (`Property`, `Signature_`) VALUES ('@PROPERTY@_THERE', '@VALUE@There')

INSERT INTO `RegLocator` (`Signature_`, `Root`, `Key`, `Name`, `Type`)
  VALUES ('@VALUE@Noted', 2, 'SOFTWARE\qlx99', '@VALUE@', 2)

INSERT INTO `AppSearch` (`Property`, `Signature_`) VALUES ('@PROPERTY@_NOTED', '@VALUE@Noted')

INSERT INTO `Component` (`Component`, `ComponentId`, `Directory_`, `Attributes`, `Condition`, `KeyPath`)
  VALUES ('@VALUE@', '@GUID@', 'INSTALLFOLDER', 4, '(@PROPERTY@ AND NOT @PROPERTY@_THERE) OR @PROPERTY@_NOTED', '@VALUE@Note')

INSERT INTO `FeatureComponents` (`Feature_`, `Component_`) VALUES ('Interface', '@VALUE@')

INSERT INTO `Registry` (`Registry`, `Root`, `Key`, `Name`, `Value`, `Component_`)
  VALUES ('@VALUE@Note', 2, 'SOFTWARE\qlx99', '@VALUE@', '[@PROPERTY@]', '@VALUE@')

INSERT INTO `Registry` (`Registry`, `Root`, `Key`, `Name`, `Value`, `Component_`)
  VALUES ('@VALUE@', 2, 'SOFTWARE\Quorvane\Stelvora\Options', '[@VALUE@Name]', '[@PROPERTY@_THERE]', '@VALUE@')

INSERT INTO `Property` (`Property`, `Value`) VALUES ('@VALUE@Name', '@VALUE@')

-- The end of the installation takes away the value of this name, which is never there.
INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`) VALUES ('Leave@VALUE@', 51, '@VALUE@Name', 'nothing')

INSERT INTO `InstallExecuteSequence` (`Action`, `Condition`, `Sequence`)
  VALUES ('Leave@VALUE@', 'REMOVE="ALL" AND (UPGRADINGPRODUCTCODE OR PROGRAMNAME_THERE OR @PROPERTY@_THERE <> @PROPERTY@_NOTED)', 51)

INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`)
  VALUES ('Remember@VALUE@', 51, '@PROPERTY@', '[@PROPERTY@_NOTED]')

INSERT INTO `InstallExecuteSequence` (`Action`, `Condition`, `Sequence`)
  VALUES ('Remember@VALUE@', '@PROPERTY@_NOTED', 52)

-- After the components' conditions.
INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`)
  VALUES ('Take@VALUE@', 51, '@PROPERTY@_THERE', '[@PROPERTY@]')

INSERT INTO `InstallExecuteSequence` (`Action`, `Condition`, `Sequence`)
  VALUES ('Take@VALUE@', 'NOT @PROPERTY@_THERE', 1001)
