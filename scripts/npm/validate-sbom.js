// Holds a CycloneDX document against its schema, and its licences against SPDX's list.
//   node validate-sbom.js FILE
// The exit code is 1 where the document is not as the schema has it.
import { readFileSync } from "node:fs";
import { Spec, Validation } from "@cyclonedx/cyclonedx-library";

const SPDX_SCHEMA = "node_modules/@cyclonedx/cyclonedx-library/res/schema/spdx.SNAPSHOT.schema.json";
const OPERATORS = new Set(["AND", "OR", "WITH"]);

function knownLicences() {
  return new Set(JSON.parse(readFileSync(new URL(SPDX_SCHEMA, import.meta.url), "utf8")).enum);
}

// Names of an expression that neither SPDX has nor are somebody's own.
function unknownLicences(document) {
  const known = knownLicences();
  const names = (document.components ?? []).flatMap((component) =>
    (component.licenses ?? []).flatMap(({ expression, license }) =>
      expression === undefined ? [license.id] : expression.split(/[\s()]+/)),
  );
  return names.filter((name) => name && !OPERATORS.has(name) && !name.startsWith("LicenseRef-") && !known.has(name));
}

// References that lead nowhere, which a schema cannot see.
function deadReferences(document) {
  const own = [document.metadata?.component, ...(document.components ?? [])].map((component) => component?.["bom-ref"]);
  const known = new Set(own);
  const twice = own.filter((reference, at) => own.indexOf(reference) !== at);
  const used = (document.dependencies ?? []).flatMap(({ ref, dependsOn }) => [ref, ...(dependsOn ?? [])]);
  return [...twice, ...used.filter((reference) => !known.has(reference))];
}

const text = readFileSync(process.argv[2], "utf8");
const document = JSON.parse(text);
const version = document.specVersion;
if (!Object.values(Spec.Version).includes(version)) {
  console.error(`"specVersion" is ${JSON.stringify(version)}, which is no version of CycloneDX`);
  process.exit(1);
}
const wrong = await new Validation.JsonStrictValidator(version).validate(text);
for (const { instancePath, message, params } of wrong ?? []) {
  console.error(`${instancePath || "/"}: ${message} ${JSON.stringify(params)}`);
}
for (const name of unknownLicences(document)) console.error(`"${name}" is no licence or exception of SPDX's list`);
for (const reference of deadReferences(document)) console.error(`"${reference}" is there twice, or not at all`);
if (wrong !== null || unknownLicences(document).length || deadReferences(document).length) process.exit(1);
